#include "ui/window/win32/Win32ChildPeer.h"

#include "platform/win32/Module.h"
#include "platform/win32/Win32Errors.h"
#include "ui/window/win32/Win32BoxPeer.h"

namespace tb {

void ReplaceBits(HWND window, int index, DWORD bits, DWORD value) {
    const auto old = static_cast<DWORD>(GetWindowLongPtrW(window, index));
    SetWindowLongPtrW(window, index, static_cast<LONG_PTR>((old & ~bits) | value));
}

HWND BoxWindow(BoxPeer& box) { return static_cast<Win32BoxPeer&>(box).Handle(); }

std::shared_ptr<Win32Canvas> CanvasOf(const Win32FormPeer& form, BoxPeer* box) {
    return box != nullptr ? static_cast<Win32BoxPeer*>(box)->Canvas() : form.Canvas();
}

OwnedWindow MakeChild(const Win32FormPeer& form, BoxPeer* box, const ChildStyle& style, void* object) {
    const HWND holder = box != nullptr ? BoxWindow(*box) : form.Handle();
    OwnedWindow window(CreateWindowExW(style.Extended, style.ClassName, L"", WS_CHILD | style.Style, 0, 0, 0, 0, holder,
                                       nullptr, OwnModule(), object));
    if (!window) throw SystemError("CreateWindowEx", GetLastError());
    return window;
}

}  // namespace tb
