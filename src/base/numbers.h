// Numbers and their texts. Numbers are never wrapped: what does not fit raises error 6.
#pragma once

#include <concepts>
#include <cstdint>

#include "base/text.h"

namespace tb {

// To the nearest integer, halves to the even one; error 6 outside 32 bits (and for no number at all).
std::int32_t RoundToInt32(double value);

// The number that a text reads as: surrounding blanks, a sign, decimal digits with an optional point, an optional
// exponent. Error 13 for any other text, the empty one included; error 6 beyond the range of a double.
double ToDouble(TextView text);

// As ToDouble, then rounded, halves to the even integer. Error 6 outside 16 or 32 bits.
std::int16_t ToInt16(TextView text);
std::int32_t ToInt32(TextView text);

// A value as a narrower integer; error 6 when it does not fit.
std::int16_t NarrowToInt16(std::int64_t value);
std::int32_t NarrowToInt32(std::int64_t value);

// "True" or "False".
Text ToText(bool value);

// The shortest decimal text of at most 15 significant digits: 60 gives "60", 63.456 gives "63.456".
Text ToText(double value);

// Upper-case hexadecimal digits, without leading zeros or, with `width`, padded to that many digits.
Text ToHex(std::uint32_t value, int width = 0);

// By the picture "###.##": at most two decimals, no zero that says nothing, and always the point: 2 gives "2.", 0 gives
// ".", 0.5 gives ".5".
Text FormatScore(double value);

}  // namespace tb
