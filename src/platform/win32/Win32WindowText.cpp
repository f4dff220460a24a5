#include "platform/win32/Win32WindowText.h"

namespace tb {

WindowHandle Win32WindowText::FindTopLevel(const Text& className, const Text& caption) {
    return ToWindowHandle(FindWindowExA(nullptr, nullptr, className.c_str(), caption.c_str()));
}

WindowHandle Win32WindowText::FindChild(WindowHandle parent, const Text& className) {
    return ToWindowHandle(FindWindowExA(ToHwnd(parent), nullptr, className.c_str(), nullptr));
}

void Win32WindowText::SendText(WindowHandle window, const Text& text) {
    // The number comes from another process. Two values stand for all windows of the desktop; they are no window.
    const HWND target = ToHwnd(window);
    if (target == nullptr || target == HWND_BROADCAST || target == HWND_TOPMOST) return;
    SendMessageA(target, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

}  // namespace tb
