#include "platform/win32/RegionalSettings.h"

#include <windows.h>

#include <iterator>

#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

char FirstCharacter(LCTYPE what, char otherwise) {
    // The user's language may be of another code page than the system.
    wchar_t text[8] = L"";
    const int length = GetLocaleInfoW(LOCALE_USER_DEFAULT, what, text, static_cast<int>(std::size(text)));
    return length > 0 && text[0] != L'\0' ? FromSystem({text, 1})[0] : otherwise;
}

}  // namespace

DateSeparators RegionalSeparators() {
    const DateSeparators usual;
    return {FirstCharacter(LOCALE_SDATE, usual.OfDate), FirstCharacter(LOCALE_STIME, usual.OfTime)};
}

}  // namespace tb
