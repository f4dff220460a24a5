#include "sitedb/codec/cCRC32.h"

#include <array>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace tb {

namespace {

constexpr std::uint32_t Polynomial = 0xEDB88320U;
constexpr size_t Slices = 16;

using Table = std::array<std::uint32_t, 256>;

constexpr std::uint32_t TimesX(std::uint32_t value) {
    return (value & 1U) != 0 ? Polynomial ^ (value >> 1) : value >> 1;
}

// Table 0 is the classic one, a byte a step. Table N tells what a byte does that N more bytes follow, so that sixteen
// bytes are one step of independent look-ups.
constexpr std::array<Table, Slices> MakeTables() {
    std::array<Table, Slices> tables{};
    for (std::uint32_t index = 0; index < 256; ++index) {
        std::uint32_t value = index;
        for (int bit = 0; bit < 8; ++bit) value = TimesX(value);
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

// Spelled out, which compilers make one load of: it is all that the look-ups wait for.
std::uint32_t WordAt(const char* bytes) {
    return ByteAt(bytes) | ByteAt(bytes + 1) << 8 | ByteAt(bytes + 2) << 16 | ByteAt(bytes + 3) << 24;
}

// What a word does that `behind` more bytes follow.
std::uint32_t LookUp(std::uint32_t word, size_t behind) {
    return Tables[behind + 3][word & 0xFFU] ^ Tables[behind + 2][word >> 8 & 0xFFU] ^
           Tables[behind + 1][word >> 16 & 0xFFU] ^ Tables[behind][word >> 24];
}

std::uint32_t BySlices(const char* next, const char* end, std::uint32_t value) {
    for (; end - next >= 16; next += 16) {
        value = LookUp(value ^ WordAt(next), 12) ^
                (LookUp(WordAt(next + 4), 8) ^ LookUp(WordAt(next + 8), 4) ^ LookUp(WordAt(next + 12), 0));
    }
    for (; end - next >= 4; next += 4) value = LookUp(value ^ WordAt(next), 0);
    for (; next < end; ++next) value = Tables[0][(value ^ ByteAt(next)) & 0xFFU] ^ (value >> 8);
    return value;
}

#if defined(__x86_64__)

// Below this the look-ups are done sooner.
constexpr std::ptrdiff_t WorthFolding = 128;

// x to that power modulo the polynomial, as a factor of the carry-less product, which comes out one bit too low.
constexpr std::int64_t Power(int exponent) {
    std::uint32_t value = 1U << 31;
    for (; exponent > 0; --exponent) value = TimesX(value);
    return static_cast<std::int64_t>(std::uint64_t{value} << 1);
}

// A sum of sixteen bytes, moved on by the distance that the two factors stand for, so that it can be added to what
// stands there.
__attribute__((target("pclmul"))) inline __m128i Moved(__m128i sum, __m128i factors) {
    return _mm_xor_si128(_mm_clmulepi64_si128(sum, factors, 0x00), _mm_clmulepi64_si128(sum, factors, 0x11));
}

__attribute__((target("pclmul"))) inline __m128i BlockAt(const char* bytes) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

// Four sums side by side run through the bytes; sixteen bytes that have the same remainder are left of them.
__attribute__((target("pclmul"))) std::uint32_t ByFolding(const char* next, const char* end, std::uint32_t value) {
    const __m128i byFour = _mm_set_epi64x(Power(4 * 128 - 32), Power(4 * 128 + 32));
    const __m128i byOne = _mm_set_epi64x(Power(128 - 32), Power(128 + 32));
    __m128i sums[4];
    for (std::ptrdiff_t lane = 0; lane < 4; ++lane) sums[lane] = BlockAt(next + 16 * lane);
    sums[0] = _mm_xor_si128(sums[0], _mm_cvtsi32_si128(static_cast<int>(value)));
    for (next += 64; end - next >= 64; next += 64) {
        for (std::ptrdiff_t lane = 0; lane < 4; ++lane) {
            sums[lane] = _mm_xor_si128(Moved(sums[lane], byFour), BlockAt(next + 16 * lane));
        }
    }
    __m128i sum = sums[0];
    for (std::ptrdiff_t lane = 1; lane < 4; ++lane) sum = _mm_xor_si128(Moved(sum, byOne), sums[lane]);
    char left[16];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(left), sum);
    return BySlices(next, end, BySlices(left, left + sizeof left, 0));
}

bool CanFold() {
    static const bool can = __builtin_cpu_supports("pclmul") != 0;
    return can;
}

std::uint32_t Crc(const char* next, const char* end, std::uint32_t value) {
    return end - next >= WorthFolding && CanFold() ? ByFolding(next, end, value) : BySlices(next, end, value);
}

#else

std::uint32_t Crc(const char* next, const char* end, std::uint32_t value) { return BySlices(next, end, value); }

#endif

}  // namespace

std::int32_t cCRC32::GetByteArrayCrc32(TextView bytes, std::int32_t seed) const {
    const std::uint32_t value = ~static_cast<std::uint32_t>(seed);
    return static_cast<std::int32_t>(~Crc(bytes.data(), bytes.data() + bytes.size(), value));
}

}  // namespace tb
