#include "platform/win32/Win32Clock.h"

#include <windows.h>

namespace tb {

Date Win32Clock::Now() {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return Date(CivilDate{now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond});
}

}  // namespace tb
