// The single-byte code page that texts are in: the case of its letters, and its characters in Unicode, for the edges
// where names arrive wide.
//
// Everything that is not told otherwise goes by CodePage::InUse(): case folding (base/text.h) and with it names of
// settings and of XML, keys of tables and what is compared with a URL; FromWide and ToWide and with them paths, the
// registry, resources, WinHTTP and what the browser hands over. On Windows that is the system's own page, the one that
// its narrow functions (captions, messages, the text of the channel) convert by. Where that has more than one byte a
// character (East Asia, UTF-8), it is windows-1252: then all is well as long as texts are ASCII, as URLs are with their
// escapes. Other letters are shown wrong, may reach another window changed, and become "?" where the system tells them
// in Unicode and windows-1252 has them not. It is windows-1252 on every other system too, in tools, service and tests.
// Always windows-1252: the order of entries in a snapshot, which is the same on every machine.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "base/text.h"

namespace tb {

struct CodePage {
    // The one that texts of this program or library are in. Each file of the program has its own copy of this, so that
    // none has to be told.
    static const CodePage& InUse() { return *s_InUse; }
    // Makes `page`, which must outlive its use, the one in use, and gives the former. The one value of the process that
    // is no member of App, because folding goes through all rooms and both ways through the house: it is set while the
    // file is loaded, before there is any other thread, and by nobody afterwards but tests, which put it back.
    static const CodePage& Use(const CodePage& page);

    std::uint32_t Number;
    // By byte. The first 128 are ASCII in each of them.
    std::array<char16_t, 256> Wide;
    std::array<char, 256> Lower;
    std::array<char, 256> Upper;

private:
    static const CodePage* s_InUse;
};

// Every byte has a character; the five codes without a letter are control characters of the same number.
extern const CodePage Windows1252;

// The page that this system brings along, in the sense above.
const CodePage& SystemCodePage();

// Characters that the code page has not become "?".
Text FromWide(std::u16string_view wide);

std::u16string ToWide(TextView text);

// A path for a line or a message.
Text PathText(const std::filesystem::path& path);

// A path from text of the code page.
std::filesystem::path TextPath(TextView text);

}  // namespace tb
