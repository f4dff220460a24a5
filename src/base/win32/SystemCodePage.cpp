#include "base/win32/SystemCodePage.h"

#include <windows.h>

#include <algorithm>

namespace tb {

namespace {

// `code`, or the byte of the same letter in the case that `mapping` names.
char InCase(const CodePage& page, size_t code, DWORD mapping) {
    const auto letter = static_cast<wchar_t>(page.Wide[code]);
    wchar_t other = letter;
    LCMapStringW(LOCALE_INVARIANT, mapping, &letter, 1, &other, 1);
    const auto* const found = std::find(page.Wide.begin() + 0x80, page.Wide.end(), static_cast<char16_t>(other));
    return static_cast<char>(found == page.Wide.end() ? code : static_cast<size_t>(found - page.Wide.begin()));
}

}  // namespace

std::optional<CodePage> ReadCodePage(std::uint32_t number) {
    CPINFO about{};
    if (!GetCPInfo(number, &about) || about.MaxCharSize != 1) return std::nullopt;
    CodePage page = Windows1252;
    page.Number = number;
    for (size_t code = 0x80; code < page.Wide.size(); ++code) {
        const char byte = static_cast<char>(code);
        wchar_t wide = 0;
        if (MultiByteToWideChar(number, 0, &byte, 1, &wide, 1) != 1) return std::nullopt;
        page.Wide[code] = static_cast<char16_t>(wide);
    }
    for (size_t code = 0x80; code < page.Wide.size(); ++code) {
        page.Lower[code] = InCase(page, code, LCMAP_LOWERCASE);
        page.Upper[code] = InCase(page, code, LCMAP_UPPERCASE);
    }
    return page;
}

// Called while a library is loaded: of what it calls, nothing loads another.
const CodePage& SystemCodePage() {
    static const CodePage page = ReadCodePage(GetACP()).value_or(Windows1252);
    return page;
}

}  // namespace tb
