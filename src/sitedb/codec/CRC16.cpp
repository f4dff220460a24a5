#include "sitedb/codec/CRC16.h"

#include <array>

namespace tb {

namespace {

constexpr std::array<std::uint16_t, 256> MakeTable() {
    std::array<std::uint16_t, 256> table{};
    for (unsigned index = 0; index < 256; ++index) {
        unsigned value = index;
        for (int bit = 0; bit < 8; ++bit) value = (value & 1U) != 0 ? 0xA001U ^ (value >> 1) : value >> 1;
        table[index] = static_cast<std::uint16_t>(value);
    }
    return table;
}

constexpr std::array<std::uint16_t, 256> Table = MakeTable();

}  // namespace

std::int16_t CRC16::GetStringCRC16(TextView text) const {
    unsigned value = 0;
    for (const char byte : text) value = Table[(value ^ static_cast<std::uint8_t>(byte)) & 0xFFU] ^ (value >> 8);
    return static_cast<std::int16_t>(value);
}

}  // namespace tb
