#include "submissions/SubmissionIds.h"

#include <cstdlib>

#include "base/errors.h"
#include "base/numbers.h"
#include "sitedb/codec/Base64.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

namespace {

constexpr size_t OffsetDigits = 4;

Text Padded(std::int32_t number, size_t width) {
    const Text digits = std::to_string(std::abs(number));
    return (number < 0 ? "-" : "") + Text(width - std::min(width, digits.size()), '0') + digits;
}

}  // namespace

Text NormalisedSubID(TextView id) {
    const size_t end = id.find('-');
    if (end == TextView::npos) throw Error(ErrorNumber::Subscript);
    const std::int16_t first = ToInt16(id.substr(0, end));
    const std::int16_t second = ToInt16(id.substr(end + 1));
    return Padded(first, 2) + "-" + Padded(second, 6);
}

Text EncipheredSubID(TextView id, std::int16_t offset, TextView key) {
    return Padded(offset, OffsetDigits) + Base64Encode(XorWithScrambleKey(NormalisedSubID(id), key, offset));
}

Text DecipheredSubID(TextView stored, TextView key) {
    const std::int16_t offset = ToInt16(Left(stored, OffsetDigits));
    return XorWithScrambleKey(Base64Decode(stored.substr(std::min(stored.size(), OffsetDigits))), key, offset);
}

}  // namespace tb
