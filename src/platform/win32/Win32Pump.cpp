#include "platform/win32/Win32Pump.h"

#include <windows.h>

#include <algorithm>

namespace tb {

void Win32Pump::ProcessMessages() {
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

void Win32Pump::Sleep(std::int32_t milliseconds) { ::Sleep(static_cast<DWORD>(std::max(milliseconds, 0))); }

}  // namespace tb
