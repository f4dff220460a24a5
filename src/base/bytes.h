// Numbers in bytes: little-endian, and as two hexadecimal digits.
#pragma once

#include <cstdint>
#include <optional>

#include "base/text.h"

namespace tb {

// The number that at most eight bytes are, the lowest one first; 0 for none.
constexpr std::uint64_t LittleEndian(TextView bytes) {
    std::uint64_t value = 0;
    for (size_t index = bytes.size(); index-- > 0;) value = value << 8 | static_cast<std::uint8_t>(bytes[index]);
    return value;
}

// Writes the lowest `count` bytes of a number to `place`, the lowest one first.
constexpr void PutLittleEndian(std::uint64_t value, char* place, size_t count) {
    for (size_t index = 0; index < count; ++index, value >>= 8) place[index] = static_cast<char>(value & 0xFFU);
}

// The value of a hexadecimal digit in either case, or -1.
constexpr int HexDigit(char character) {
    if (character >= '0' && character <= '9') return character - '0';
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    return -1;
}

// The byte that the first two characters spell in hexadecimal digits; nothing for any other text.
constexpr std::optional<std::uint8_t> HexByte(TextView text) {
    if (text.size() < 2) return std::nullopt;
    const int high = HexDigit(text[0]);
    const int low = HexDigit(text[1]);
    if (high < 0 || low < 0) return std::nullopt;
    return static_cast<std::uint8_t>(high * 16 + low);
}

}  // namespace tb
