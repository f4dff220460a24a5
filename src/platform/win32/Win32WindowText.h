// Windows found and written to by the system's single-byte calls.
#pragma once

#include <windows.h>

#include "platform/WindowText.h"

namespace tb {

// The significant 32 bits of a window travel signed; a window is their sign extension.
inline HWND ToHwnd(WindowHandle window) { return reinterpret_cast<HWND>(static_cast<INT_PTR>(window)); }
inline WindowHandle ToWindowHandle(HWND window) { return static_cast<WindowHandle>(reinterpret_cast<INT_PTR>(window)); }

class Win32WindowText : public WindowText {
public:
    WindowHandle FindTopLevel(const Text& className, const Text& caption) override;
    WindowHandle FindChild(WindowHandle parent, const Text& className) override;
    // While the owner handles the text, messages that other threads send to windows of this thread are handled inside.
    void SendText(WindowHandle window, const Text& text) override;
};

}  // namespace tb
