#include "ui/window/win32/Win32ChildPeer.h"

#include "platform/win32/Module.h"
#include "platform/win32/Win32Errors.h"
#include "ui/window/win32/Win32BoxPeer.h"

namespace tb {

HWND BoxWindow(BoxPeer& box) { return static_cast<Win32BoxPeer&>(box).Handle(); }

OwnedWindow MakeChild(const Win32WindowSystem& system, const Win32FormPeer& form, BoxPeer* box, const ChildStyle& style,
                      void* object) {
    const HWND holder = box != nullptr ? BoxWindow(*box) : form.Handle();
    OwnedWindow window(CreateWindowExW(style.Extended, style.ClassName, L"", WS_CHILD | style.Style, 0, 0, 0, 0, holder,
                                       nullptr, OwnModule(), object));
    if (!window) throw SystemError("CreateWindowEx", GetLastError());
    SendMessageW(window.Get(), WM_SETFONT, reinterpret_cast<WPARAM>(system.Font()), FALSE);
    return window;
}

}  // namespace tb
