#include "platform/win32/RegionalSettings.h"

#include <windows.h>

namespace tb {

namespace {

char FirstCharacter(LCTYPE what, char otherwise) {
    char text[8] = "";
    const int length = GetLocaleInfoA(LOCALE_USER_DEFAULT, what, text, static_cast<int>(sizeof text));
    return length > 0 && text[0] != '\0' ? text[0] : otherwise;
}

}  // namespace

DateSeparators RegionalSeparators() {
    const DateSeparators usual;
    return {FirstCharacter(LOCALE_SDATE, usual.OfDate), FirstCharacter(LOCALE_STIME, usual.OfTime)};
}

}  // namespace tb
