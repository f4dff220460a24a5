#include "sitedb/codec/cCRC32.h"

#include <array>

namespace tb {

namespace {

constexpr std::array<std::uint32_t, 256> MakeTable() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t index = 0; index < 256; ++index) {
        std::uint32_t value = index;
        for (int bit = 0; bit < 8; ++bit) value = (value & 1U) != 0 ? 0xEDB88320U ^ (value >> 1) : value >> 1;
        table[index] = value;
    }
    return table;
}

constexpr std::array<std::uint32_t, 256> Table = MakeTable();

}  // namespace

std::int32_t cCRC32::GetByteArrayCrc32(TextView bytes, std::int32_t seed) const {
    std::uint32_t value = ~static_cast<std::uint32_t>(seed);
    for (const char byte : bytes) value = Table[(value ^ static_cast<std::uint8_t>(byte)) & 0xFFU] ^ (value >> 8);
    return static_cast<std::int32_t>(~value);
}

}  // namespace tb
