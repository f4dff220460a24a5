// A colour as settings, skins and windows have it.
#pragma once

#include <cstdint>

namespace tb {

// 0x00BBGGRR; with the top bit set, the number of a colour that the user has chosen for the system.
class Color {
public:
    constexpr Color(std::int32_t bits = 0) : m_Bits(bits) {}

    constexpr std::int32_t Bits() const { return m_Bits; }
    constexpr bool IsSystem() const { return m_Bits < 0; }
    // Of a colour that is none of the system's: 0 to 255.
    constexpr std::int32_t Red() const { return m_Bits & 0xFF; }
    constexpr std::int32_t Green() const { return (m_Bits >> 8) & 0xFF; }
    constexpr std::int32_t Blue() const { return (m_Bits >> 16) & 0xFF; }
    // Each channel from 0 to 255.
    static constexpr Color FromChannels(std::int32_t red, std::int32_t green, std::int32_t blue) {
        return {red | (green << 8) | (blue << 16)};
    }
    bool operator==(const Color&) const = default;

private:
    std::int32_t m_Bits;
};

struct ControlColors {
    Color Back;
    Color Fore;
    bool operator==(const ControlColors&) const = default;
};

// Those of the system that the user has chosen for a purpose.
namespace SystemColors {
inline constexpr Color ActiveCaption{static_cast<std::int32_t>(0x80000002)};
inline constexpr Color InactiveCaption{static_cast<std::int32_t>(0x80000003)};
inline constexpr Color Window{static_cast<std::int32_t>(0x80000005)};
inline constexpr Color WindowFrame{static_cast<std::int32_t>(0x80000006)};
inline constexpr Color WindowText{static_cast<std::int32_t>(0x80000008)};
inline constexpr Color ActiveCaptionText{static_cast<std::int32_t>(0x80000009)};
inline constexpr Color Highlight{static_cast<std::int32_t>(0x8000000D)};
inline constexpr Color HighlightText{static_cast<std::int32_t>(0x8000000E)};
inline constexpr Color ButtonFace{static_cast<std::int32_t>(0x8000000F)};
inline constexpr Color GrayText{static_cast<std::int32_t>(0x80000011)};
inline constexpr Color ButtonText{static_cast<std::int32_t>(0x80000012)};
inline constexpr Color InactiveCaptionText{static_cast<std::int32_t>(0x80000013)};
}  // namespace SystemColors

}  // namespace tb
