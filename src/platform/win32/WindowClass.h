// Window classes of this program and how an object meets its window.
#pragma once

#include <windows.h>

namespace tb {

// Registers a class with the given procedure, or does nothing when this program has registered that name. Error 51.
// Two threads must not register the same name at the same moment.
void RegisterWindowClass(const char* className, WNDPROC procedure);

// Registers `className` as the system's class `original` with another procedure in front, or does nothing when this
// program has registered that name. Returns the procedure of `original`, to be called by CallWindowProc. Error 51.
WNDPROC RegisterSuperclass(const char* className, const char* original, WNDPROC procedure);

// The object that the creator of a window passed as its last parameter. A procedure calls this for every message; it is
// null before WM_NCCREATE and after WM_NCDESTROY, so that no message reaches an object that is not there.
template <typename Object>
Object* WindowObject(HWND window, UINT message, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        SetWindowLongPtrA(window, GWLP_USERDATA,
                          reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTA*>(lParam)->lpCreateParams));
    }
    auto* const object = reinterpret_cast<Object*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (message == WM_NCDESTROY) SetWindowLongPtrA(window, GWLP_USERDATA, 0);
    return object;
}

}  // namespace tb
