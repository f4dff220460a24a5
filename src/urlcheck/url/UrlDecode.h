// The one URL decoder of the program.
#pragma once

#include "base/text.h"

namespace tb {

// "+" gives a blank, "%" and two hexadecimal digits the byte of that code (NUL too); every other "%" and every other
// character stays. One pass: what decoding makes is not decoded again. Never fails.
Text UrlDecode(TextView text);

}  // namespace tb
