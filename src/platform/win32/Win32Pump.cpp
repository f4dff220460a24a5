#include "platform/win32/Win32Pump.h"

#include <windows.h>

#include <algorithm>

#include "platform/win32/MessageLoop.h"

namespace tb {

void Win32Pump::ProcessMessages() { ServeWaitingMessages(); }

void Win32Pump::Sleep(std::int32_t milliseconds) { ::Sleep(static_cast<DWORD>(std::max(milliseconds, 0))); }

}  // namespace tb
