// What can be read in a mail.
#pragma once

#include <vector>

#include "base/text.h"

namespace tb {

// The texts of a mail, in order, each without its transfer encoding: the body, or the text parts of a body in parts,
// those of mails within it too. A body that is not what its headers say (a mail program may have stored it decoded, or
// one part alone) stays as it is. Attachments of other types are left out. `headers` without the empty line behind
// them; lines may end by CR LF or LF. Never fails.
std::vector<Text> MailTexts(TextView headers, TextView body);

}  // namespace tb
