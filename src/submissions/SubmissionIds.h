// The service's identifiers of submissions, and the form in which the store keeps them: four digits that say where the
// key stream begins, then Base64 of the identifier XORed with the scrambling key.
#pragma once

#include <cstdint>

#include "base/text.h"

namespace tb {

// An identifier as the service tells it, two decimal 16-bit numbers around the first "-", as two digits, "-" and six
// digits; more digits where a number has more, its sign in front. Error 9 without a "-", 13 when a side is no number, 6
// beyond 16 bits.
Text NormalisedSubID(TextView id);

// The stored form of an identifier whose key stream begins at `offset`. Errors as above.
Text EncipheredSubID(TextView id, std::int16_t offset, TextView key);

// Back to the normalised form. Error 13 when the first four characters are no number, 9 when nothing is behind them or
// the number is negative. A text that is no stored form otherwise gives bytes of no meaning.
Text DecipheredSubID(TextView stored, TextView key);

}  // namespace tb
