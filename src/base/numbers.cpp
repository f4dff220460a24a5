#include "base/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

#include "base/errors.h"

namespace tb {

namespace {

template <typename Integer>
Integer Narrow(std::int64_t value) {
    if (value < std::numeric_limits<Integer>::min() || value > std::numeric_limits<Integer>::max()) {
        throw Error(ErrorNumber::Overflow);
    }
    return static_cast<Integer>(value);
}

}  // namespace

std::int32_t RoundToInt32(double value) {
    if (!(std::fabs(value) < 4e9)) throw Error(ErrorNumber::Overflow);
    // The default rounding mode of the processor is to the nearest, halves to even.
    return NarrowToInt32(std::llrint(value));
}

double ToDouble(TextView text) {
    text = Trim(text);
    const bool signedText = !text.empty() && (text.front() == '+' || text.front() == '-');
    const bool negative = signedText && text.front() == '-';
    if (signedText) text.remove_prefix(1);
    // from_chars would also take a second minus sign and the words for infinity.
    if (text.empty() || (text.front() != '.' && (text.front() < '0' || text.front() > '9'))) {
        throw Error(ErrorNumber::TypeMismatch);
    }
    double value = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (end != text.data() + text.size()) throw Error(ErrorNumber::TypeMismatch);
    if (failure == std::errc::result_out_of_range) throw Error(ErrorNumber::Overflow);
    if (failure != std::errc()) throw Error(ErrorNumber::TypeMismatch);
    return negative ? -value : value;
}

std::int16_t ToInt16(TextView text) { return NarrowToInt16(ToInt32(text)); }
std::int32_t ToInt32(TextView text) {
    std::int32_t value = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    // Whatever is more than a plain number is read as one that need not be whole.
    if (failure == std::errc() && end == text.data() + text.size()) return value;
    return RoundToInt32(ToDouble(text));
}

std::int16_t NarrowToInt16(std::int64_t value) { return Narrow<std::int16_t>(value); }
std::int32_t NarrowToInt32(std::int64_t value) { return Narrow<std::int32_t>(value); }

Text ToText(bool value) { return value ? "True" : "False"; }

Text ToText(double value) {
    char digits[40];
    return {digits, static_cast<size_t>(std::snprintf(digits, sizeof digits, "%.15g", value))};
}

Text ToHex(std::uint32_t value, int width) {
    char digits[16];
    const int length = std::snprintf(digits, sizeof digits, "%0*X", std::clamp(width, 1, 8), value);
    return {digits, static_cast<size_t>(length)};
}

Text FormatScore(double value) {
    char digits[400];
    Text text(digits, static_cast<size_t>(std::snprintf(digits, sizeof digits, "%.2f", std::fabs(value))));
    text.erase(text.find_last_not_of('0') + 1);
    text.erase(0, std::min(text.find_first_not_of('0'), text.size()));
    return value < 0 && text != "." ? "-" + text : text;
}

}  // namespace tb
