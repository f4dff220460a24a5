#include "platform/win32/Win32Clock.h"

#include "base/errors.h"

namespace tb {

namespace {

Date FromSystemTime(const SYSTEMTIME& time) {
    return Date(CivilDate{time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond});
}

}  // namespace

Date LocalDate(const FILETIME& moment) {
    SYSTEMTIME universal{};
    SYSTEMTIME local{};
    if (!FileTimeToSystemTime(&moment, &universal) || !SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local)) {
        return {};
    }
    return FromSystemTime(local);
}

FILETIME Moment(const Date& date, bool local) {
    const CivilDate civil = date.Civil();
    SYSTEMTIME time{static_cast<WORD>(civil.Year),
                    static_cast<WORD>(civil.Month),
                    0,
                    static_cast<WORD>(civil.Day),
                    static_cast<WORD>(civil.Hour),
                    static_cast<WORD>(civil.Minute),
                    static_cast<WORD>(civil.Second),
                    0};
    FILETIME moment{};
    // By the rules for that day, as LocalDate goes back: the present offset would be an hour off in half of the year.
    if ((local && !TzSpecificLocalTimeToSystemTime(nullptr, &time, &time)) || !SystemTimeToFileTime(&time, &moment)) {
        throw Error(ErrorNumber::InvalidCall);
    }
    return moment;
}

Date Win32Clock::Now() {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return FromSystemTime(now);
}

}  // namespace tb
