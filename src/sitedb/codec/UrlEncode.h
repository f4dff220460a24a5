// The form encoding of what is posted to web services.
#pragma once

#include "base/text.h"

namespace tb {

// Letters and digits of ASCII stay, a blank becomes "+", every other byte "%" and two upper-case hexadecimal digits.
Text UrlEncode(TextView text);

}  // namespace tb
