#include "base/codepage.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tb {

namespace {

// Codes 0x80 to 0x9F; all others are the Unicode character of the same number.
constexpr std::array<char16_t, 32> HighControls{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

}  // namespace

Text FromWide(std::u16string_view wide) {
    Text text;
    text.reserve(wide.size());
    for (const char16_t character : wide) {
        const auto found = std::find(HighControls.begin(), HighControls.end(), character);
        if (found != HighControls.end()) {
            text += static_cast<char>(0x80 + (found - HighControls.begin()));
        } else {
            text += character < 0x80 || (character >= 0xA0 && character <= 0xFF) ? static_cast<char>(character) : '?';
        }
    }
    return text;
}

std::u16string ToWide(TextView text) {
    std::u16string wide;
    wide.reserve(text.size());
    for (const char character : text) {
        const auto code = static_cast<std::uint8_t>(character);
        wide += code >= 0x80 && code < 0xA0 ? HighControls[code - 0x80U] : static_cast<char16_t>(code);
    }
    return wide;
}

Text PathText(const std::filesystem::path& path) { return FromWide(path.u16string()); }

std::filesystem::path TextPath(TextView text) { return {ToWide(text)}; }

}  // namespace tb
