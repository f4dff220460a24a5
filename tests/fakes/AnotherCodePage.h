// Windows-1251, as far as its letters go, in place of the code page in use for as long as this lives.
#pragma once

#include "base/codepage.h"

namespace tb {

class AnotherCodePage {
public:
    AnotherCodePage() : m_Former(CodePage::Use(m_Page)) {}
    AnotherCodePage(const AnotherCodePage&) = delete;
    AnotherCodePage& operator=(const AnotherCodePage&) = delete;
    ~AnotherCodePage() { CodePage::Use(m_Former); }

private:
    static CodePage Cyrillic() {
        CodePage page = Windows1252;
        page.Number = 1251;
        for (unsigned code = 0x80; code < 0x100; ++code) page.Lower[code] = page.Upper[code] = static_cast<char>(code);
        for (unsigned code = 0xC0; code < 0xE0; ++code) {
            page.Lower[code] = static_cast<char>(code + 0x20);
            page.Upper[code + 0x20] = static_cast<char>(code);
        }
        for (unsigned code = 0xC0; code < 0x100; ++code) page.Wide[code] = static_cast<char16_t>(0x410 + code - 0xC0);
        page.Lower[0xA8] = '\xB8';
        page.Upper[0xB8] = '\xA8';
        page.Wide[0xA8] = u'\u0401';
        page.Wide[0xB8] = u'\u0451';
        return page;
    }

    const CodePage m_Page = Cyrillic();
    const CodePage& m_Former;
};

}  // namespace tb
