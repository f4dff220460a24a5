#include "base/codepage.h"

namespace tb {

const CodePage& SystemCodePage() { return Windows1252; }

}  // namespace tb
