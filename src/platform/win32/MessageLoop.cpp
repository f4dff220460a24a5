#include "platform/win32/MessageLoop.h"

#include "platform/win32/Win32Errors.h"

namespace tb {

namespace {

constexpr const wchar_t* DialogKeys = L"TrawlbeamDialogKeys";

bool IsKeyOfDialog(MSG& message) {
    if (message.message < WM_KEYFIRST || message.message > WM_KEYLAST) return false;
    const HWND window = GetAncestor(message.hwnd, GA_ROOT);
    if (window == nullptr || GetPropW(window, DialogKeys) == nullptr) return false;
    const bool isPress = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
    if (isPress && SendMessageW(window, KeyAsked, message.wParam, message.lParam) != 0) return true;
    // Whoever was asked may have ended the windows.
    return !IsWindow(message.hwnd) || IsDialogMessageW(window, &message) != FALSE;
}

void Handle(MSG& message) {
    if (IsKeyOfDialog(message)) return;
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

}  // namespace

int RunMessageLoop(const std::function<bool()>& done) {
    MSG message{};
    for (;;) {
        // Asked before the wait, and not where the end, with its status, is in the queue already.
        if (done && done() && !PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_NOREMOVE)) return 0;
        // Zero ends the loop, -1 means a parameter that is wrong; both end here.
        if (GetMessageW(&message, nullptr, 0, 0) <= 0) break;
        Handle(message);
    }
    return message.message == WM_QUIT ? static_cast<int>(message.wParam) : 1;
}

void EndMessageLoop(int status) { PostQuitMessage(status); }

bool ServeWaitingMessages(int limit) {
    MSG message{};
    for (int served = 0; served < limit && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); ++served) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return false;
        }
        Handle(message);
    }
    return true;
}

bool ServeMessagesUntil(const std::function<bool()>& done) {
    while (!done()) {
        // One at a time, or a flood of them would hold up the end.
        if (!ServeWaitingMessages(1)) return false;
        if (done()) break;
        const DWORD woken = MsgWaitForMultipleObjectsEx(0, nullptr, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        if (woken == WAIT_FAILED) throw SystemError("MsgWaitForMultipleObjectsEx", GetLastError());
    }
    return true;
}

void UseDialogKeys(HWND window) { SetPropW(window, DialogKeys, window); }

}  // namespace tb
