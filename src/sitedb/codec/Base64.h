// Base64 by RFC 4648: the alphabet with "+" and "/", "=" padding, no line breaks.
#pragma once

#include <cstdint>

#include "base/text.h"

namespace tb {

Text Base64Encode(TextView bytes);

// Back to bytes, four characters at a time; what is left of an incomplete group is passed over. Characters outside the
// alphabet are not detected: they give wrong bytes.
Text Base64Decode(TextView characters);

// Base64 of the value's four bytes, low byte first.
Text LongToBase64(std::int32_t value);

// Base64 of the text's bytes.
inline Text TextToBase64(TextView text) { return Base64Encode(text); }

}  // namespace tb
