// Sixteen bytes of a text looked at in one step, by the instructions that every x86-64 processor has, or one by one.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tb {

// Bit I of a mask stands for byte I.
class ByteBlock {
public:
    using Mask = std::uint32_t;
    static constexpr size_t Size = 16;

#if defined(__SSE2__)
    explicit ByteBlock(const char* bytes) : m_Bytes(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes))) {}
    void Store(char* bytes) const { _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), m_Bytes); }

    Mask Where(char character) const { return MaskOf(_mm_cmpeq_epi8(m_Bytes, _mm_set1_epi8(character))); }
    // Bytes beyond ASCII.
    Mask WhereHigh() const { return MaskOf(m_Bytes); }
    // ASCII's capital letters.
    Mask WhereCapital() const { return MaskOf(Capitals()); }
    // Those as small ones.
    void LowerCapitals() { m_Bytes = _mm_add_epi8(m_Bytes, _mm_and_si128(Capitals(), _mm_set1_epi8('a' - 'A'))); }

private:
    static Mask MaskOf(__m128i bytes) { return static_cast<Mask>(_mm_movemask_epi8(bytes)); }
    __m128i Capitals() const {
        return _mm_and_si128(_mm_cmpgt_epi8(m_Bytes, _mm_set1_epi8('A' - 1)),
                             _mm_cmplt_epi8(m_Bytes, _mm_set1_epi8('Z' + 1)));
    }

    __m128i m_Bytes;
#else
    explicit ByteBlock(const char* bytes) { std::memcpy(m_Bytes.data(), bytes, Size); }
    void Store(char* bytes) const { std::memcpy(bytes, m_Bytes.data(), Size); }

    Mask Where(char character) const {
        return MaskOf([&](char byte) { return byte == character; });
    }
    Mask WhereHigh() const {
        return MaskOf([](char byte) { return (static_cast<std::uint8_t>(byte) & 0x80U) != 0; });
    }
    Mask WhereCapital() const {
        return MaskOf([](char byte) { return IsCapital(byte); });
    }
    void LowerCapitals() {
        for (char& byte : m_Bytes) byte = static_cast<char>(IsCapital(byte) ? byte + ('a' - 'A') : byte);
    }

private:
    static bool IsCapital(char byte) { return byte >= 'A' && byte <= 'Z'; }
    template <typename Test>
    Mask MaskOf(Test test) const {
        Mask mask = 0;
        for (size_t index = 0; index < Size; ++index) mask |= Mask{test(m_Bytes[index])} << index;
        return mask;
    }

    std::array<char, Size> m_Bytes;
#endif
};

// Runs `visit(bit)` for the bits of a mask, lowest first, as long as it says so.
template <typename Visit>
bool ForEachBit(ByteBlock::Mask mask, Visit visit) {
    for (; mask != 0; mask &= mask - 1) {
        if (!visit(static_cast<size_t>(std::countr_zero(mask)))) return false;
    }
    return true;
}

// The bits of the bytes that a text still has.
inline ByteBlock::Mask FirstBits(size_t left) {
    return left < ByteBlock::Size ? (ByteBlock::Mask{1} << left) - 1 : 0xFFFFU;
}

}  // namespace tb
