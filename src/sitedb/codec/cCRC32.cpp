#include "sitedb/codec/cCRC32.h"

#include <array>

namespace tb {

namespace {

constexpr size_t Slices = 16;

using Table = std::array<std::uint32_t, 256>;

// Table 0 is the classic one, a byte a step. Table N tells what a byte does that N more bytes follow, so that sixteen
// bytes are one step of independent look-ups.
constexpr std::array<Table, Slices> MakeTables() {
    std::array<Table, Slices> tables{};
    for (std::uint32_t index = 0; index < 256; ++index) {
        std::uint32_t value = index;
        for (int bit = 0; bit < 8; ++bit) value = (value & 1U) != 0 ? 0xEDB88320U ^ (value >> 1) : value >> 1;
        tables[0][index] = value;
    }
    for (size_t slice = 1; slice < Slices; ++slice) {
        for (size_t index = 0; index < 256; ++index) {
            const std::uint32_t shorter = tables[slice - 1][index];
            tables[slice][index] = tables[0][shorter & 0xFFU] ^ (shorter >> 8);
        }
    }
    return tables;
}

constexpr std::array<Table, Slices> Tables = MakeTables();

std::uint32_t ByteAt(const char* bytes) { return static_cast<std::uint8_t>(*bytes); }

std::uint32_t WordAt(const char* bytes) {
    return ByteAt(bytes) | ByteAt(bytes + 1) << 8 | ByteAt(bytes + 2) << 16 | ByteAt(bytes + 3) << 24;
}

// What a word does that `behind` more bytes follow.
std::uint32_t LookUp(std::uint32_t word, size_t behind) {
    return Tables[behind + 3][word & 0xFFU] ^ Tables[behind + 2][word >> 8 & 0xFFU] ^
           Tables[behind + 1][word >> 16 & 0xFFU] ^ Tables[behind][word >> 24];
}

}  // namespace

std::int32_t cCRC32::GetByteArrayCrc32(TextView bytes, std::int32_t seed) const {
    std::uint32_t value = ~static_cast<std::uint32_t>(seed);
    const char* next = bytes.data();
    const char* const end = next + bytes.size();
    for (; end - next >= 16; next += 16) {
        value = LookUp(value ^ WordAt(next), 12) ^
                (LookUp(WordAt(next + 4), 8) ^ LookUp(WordAt(next + 8), 4) ^ LookUp(WordAt(next + 12), 0));
    }
    for (; end - next >= 4; next += 4) value = LookUp(value ^ WordAt(next), 0);
    for (; next < end; ++next) value = Tables[0][(value ^ ByteAt(next)) & 0xFFU] ^ (value >> 8);
    return static_cast<std::int32_t>(~value);
}

}  // namespace tb
