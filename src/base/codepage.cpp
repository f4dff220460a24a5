#include "base/codepage.h"

#include <algorithm>

namespace tb {

namespace {

constexpr std::array<char16_t, 256> MakeWide() {
    // Codes 0x80 to 0x9F; all others are the Unicode character of the same number.
    constexpr std::array<char16_t, 32> high{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                            0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                            0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                            0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
    std::array<char16_t, 256> wide{};
    for (size_t code = 0; code < wide.size(); ++code) {
        wide[code] = code >= 0x80 && code < 0xA0 ? high[code - 0x80] : static_cast<char16_t>(code);
    }
    return wide;
}

// Each letter beyond ASCII with its other case in the same page.
constexpr std::array<char, 256> MakeLower() {
    std::array<char, 256> lower{};
    for (unsigned code = 0; code < lower.size(); ++code) {
        const bool ascii = code >= 'A' && code <= 'Z';
        const bool accented = code >= 0xC0 && code <= 0xDE && code != 0xD7;
        lower[code] = static_cast<char>(ascii || accented ? code + 0x20 : code);
    }
    lower[0x8A] = '\x9A';
    lower[0x8C] = '\x9C';
    lower[0x8E] = '\x9E';
    lower[0x9F] = '\xFF';
    return lower;
}

constexpr std::array<char, 256> MakeUpper() {
    constexpr std::array<char, 256> lower = MakeLower();
    std::array<char, 256> upper{};
    for (unsigned code = 0; code < upper.size(); ++code) upper[code] = static_cast<char>(code);
    for (unsigned code = 0; code < upper.size(); ++code) {
        const char other = lower[code];
        if (other != static_cast<char>(code)) upper[static_cast<std::uint8_t>(other)] = static_cast<char>(code);
    }
    return upper;
}

char ByteOf(const CodePage& page, char16_t character) {
    if (character < 0x80) return static_cast<char>(character);
    const auto* const found = std::find(page.Wide.begin() + 0x80, page.Wide.end(), character);
    return found == page.Wide.end() ? '?' : static_cast<char>(found - page.Wide.begin());
}

}  // namespace

constinit const CodePage Windows1252{1252, MakeWide(), MakeLower(), MakeUpper()};

// What folds before the next line was run, while the file is loaded, has ASCII to fold.
constinit const CodePage* CodePage::s_InUse = &Windows1252;

namespace {

[[maybe_unused]] const CodePage& BeforeLoad = CodePage::Use(SystemCodePage());

}  // namespace

const CodePage& CodePage::Use(const CodePage& page) {
    const CodePage& former = *s_InUse;
    s_InUse = &page;
    return former;
}

Text FromWide(std::u16string_view wide) {
    const CodePage& page = CodePage::InUse();
    Text text(wide.size(), '\0');
    std::transform(wide.begin(), wide.end(), text.begin(), [&](char16_t character) { return ByteOf(page, character); });
    return text;
}

std::u16string ToWide(TextView text) {
    const CodePage& page = CodePage::InUse();
    std::u16string wide(text.size(), u'\0');
    std::transform(text.begin(), text.end(), wide.begin(),
                   [&](char character) { return page.Wide[static_cast<std::uint8_t>(character)]; });
    return wide;
}

Text PathText(const std::filesystem::path& path) { return FromWide(path.u16string()); }

std::filesystem::path TextPath(TextView text) { return {ToWide(text)}; }

}  // namespace tb
