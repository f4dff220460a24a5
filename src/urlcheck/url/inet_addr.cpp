#include "urlcheck/url/inet_addr.h"

#include <charconv>
#include <vector>

namespace tb {

namespace {

constexpr IPv4 NoAddress = 0xFFFFFFFFU;
constexpr TextView WhiteSpace = "\t\n\v\f\r ";

std::optional<std::uint32_t> Number(TextView digits) {
    int base = 10;
    if (digits.size() > 1 && digits[0] == '0') {
        const bool hexadecimal = digits[1] == 'x' || digits[1] == 'X';
        base = hexadecimal ? 16 : 8;
        digits.remove_prefix(hexadecimal ? 2 : 1);
    }
    std::uint32_t value = 0;
    const char* const last = digits.data() + digits.size();
    const auto [end, failure] = std::from_chars(digits.data(), last, value, base);
    if (failure != std::errc() || end != last) return std::nullopt;
    return value;
}

}  // namespace

std::optional<IPv4> inet_addr(TextView text) {
    // Most hosts are names.
    if (text.empty() || text.front() < '0' || text.front() > '9') return std::nullopt;
    const std::vector<TextView> parts = SplitViews(text.substr(0, text.find_first_of(WhiteSpace)), '.');
    if (parts.empty() || parts.size() > 4) return std::nullopt;
    IPv4 address = 0;
    for (size_t index = 0; index < parts.size(); ++index) {
        const std::optional<std::uint32_t> value = Number(parts[index]);
        const bool last = index + 1 == parts.size();
        // The bits that this part may fill: one byte, or all that the parts before it left.
        const unsigned bits = last ? 32 - 8 * static_cast<unsigned>(index) : 8;
        if (!value || (bits < 32 && *value >> bits != 0)) return std::nullopt;
        address |= last ? *value : *value << (24 - 8 * index);
    }
    if (address == NoAddress) return std::nullopt;
    return address;
}

Text inet_ntoa(IPv4 address) {
    Text result;
    for (int shift = 24; shift >= 0; shift -= 8) {
        if (!result.empty()) result += '.';
        result += std::to_string(address >> shift & 0xFFU);
    }
    return result;
}

}  // namespace tb
