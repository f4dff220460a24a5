// Window classes of this program and how an object meets its window. A class belongs to the program or library that
// this code was linked into: the program may have classes of the same name, and stays when a library goes.
#pragma once

#include <windows.h>

#include <string>

namespace tb {

// What the windows of a class have beside their procedure and the arrow; the system's or the program's for ever.
struct ClassLook {
    HICON Icon = nullptr;
    HBRUSH Ground = nullptr;
};

// Registers a class with the given procedure, or does nothing when this module has registered that name. Texts reach
// the procedure wide. Error 51. Two threads must not register the same name at the same moment.
void RegisterWindowClass(const std::wstring& className, WNDPROC procedure, const ClassLook& look = {});

// The same for windows that take part in the channel: their texts are the bytes that a client sends, so they are
// single-byte windows, as DefWindowProcA and its like serve them.
void RegisterChannelClass(const char* className, WNDPROC procedure);

// Registers `className` for the channel as the system's class `original` with another procedure in front. Returns the
// procedure of `original`, to be called by CallWindowProcA. Error 51.
WNDPROC RegisterChannelClass(const char* className, const char* original, WNDPROC procedure);

// A cursor of the system by its number (IDC_...).
inline HCURSOR SystemCursor(const char* number) {
    return LoadCursorW(nullptr, reinterpret_cast<const wchar_t*>(number));
}

// The object that the creator of a window passed as its last parameter. A procedure calls this for every message; it is
// null before WM_NCCREATE and after WM_NCDESTROY, so that no message reaches an object that is not there.
template <typename Object>
Object* WindowObject(HWND window, UINT message, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        SetWindowLongPtrW(window, GWLP_USERDATA,
                          reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams));
    }
    auto* const object = reinterpret_cast<Object*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_NCDESTROY) SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    return object;
}

}  // namespace tb
