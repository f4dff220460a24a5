#include "ui/window/win32/Win32Subclass.h"

#include <commctrl.h>

#include "ui/window/win32/Win32WindowSystem.h"

namespace tb {

namespace {

constexpr UINT_PTR OwnId = 1;

}  // namespace

void Win32Subclass::Attach(HWND window) {
    SetWindowSubclass(window, &Procedure, OwnId, reinterpret_cast<DWORD_PTR>(this));
}

void Win32Subclass::Detach(HWND window) { RemoveWindowSubclass(window, &Procedure, OwnId); }

LRESULT CALLBACK Win32Subclass::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                          DWORD_PTR object) noexcept {
    auto* const self = reinterpret_cast<Win32Subclass*>(object);
    const Win32WindowSystem& system = self->m_OwnSystem;
    bool handled = false;
    LRESULT result = 0;
    Trap([&] { handled = self->OnMessage(message, wParam, lParam, result); },
         [&](const RuntimeError& error) { system.Failed(error); });
    return handled ? result : DefSubclassProc(window, message, wParam, lParam);
}

}  // namespace tb
