#include "platform/win32/MessageLoop.h"

#include <windows.h>

namespace tb {

int RunMessageLoop() {
    MSG message{};
    // Zero ends the loop, -1 means a parameter that is wrong; both end here.
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return message.message == WM_QUIT ? static_cast<int>(message.wParam) : 1;
}

void EndMessageLoop(int status) { PostQuitMessage(status); }

}  // namespace tb
