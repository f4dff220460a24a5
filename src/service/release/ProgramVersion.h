// The version that a program file for Windows states in its version resource.
#pragma once

#include <optional>

#include "base/text.h"

namespace tb {

// The string "FileVersion" of the first version resource in `file`, the whole content of an .exe, .dll or .ocx. It is
// that of the first language and code page that the resource lists, and of language 0 and code page 0 where it lists
// none, as the program reads it. Empty without such a string; nothing without a version resource. Raises an InputError
// for what is no program file or ends inside of what should be there. No byte of it is trusted.
std::optional<Text> FileVersionOf(TextView file);

}  // namespace tb
