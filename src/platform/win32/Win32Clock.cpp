#include "platform/win32/Win32Clock.h"

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

Date Win32Clock::Now() {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return FromSystemTime(now);
}

}  // namespace tb
