#include "ui/window/win32/Win32BoxPeer.h"

#include "platform/win32/WindowClass.h"

namespace tb {

namespace {

constexpr const wchar_t* ClassName = L"TrawlbeamBox";

}  // namespace

// What is held by it is reached through it by the keys.
Win32BoxPeer::Win32BoxPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box, PointerEvents& pointer,
                           bool hasBorder)
    : Win32DrawnPeer(system, pointer, form, box,
                     ChildStyle{RegisteredClass(), WS_CLIPCHILDREN | WS_CLIPSIBLINGS | WS_GROUP,
                                WS_EX_CONTROLPARENT | (hasBorder ? DWORD{WS_EX_STATICEDGE} : DWORD{0})},
                     // The object meets its window when it is whole.
                     nullptr) {
    m_Canvas->Attach(Handle());
    SetWindowLongPtrW(Handle(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

const wchar_t* Win32BoxPeer::RegisteredClass() {
    RegisterWindowClass(ClassName, &Win32BoxPeer::Procedure);
    return ClassName;
}

void Win32BoxPeer::SetTabStop(bool tabStop) {
    ReplaceBits(Handle(), GWL_STYLE, WS_TABSTOP, tabStop ? WS_TABSTOP : 0);
    // One that holds others is never reached itself.
    ReplaceBits(Handle(), GWL_EXSTYLE, WS_EX_CONTROLPARENT, tabStop ? 0 : WS_EX_CONTROLPARENT);
}

bool Win32BoxPeer::Dispatch(UINT message, WPARAM wParam) {
    if (message == WM_SIZE) m_Canvas->Sized();
    return m_Canvas->OnMessage(message, wParam);
}

LRESULT CALLBACK Win32BoxPeer::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    switch (message) {
    case WM_CLOSE:
    case WM_COMMAND:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORSTATIC:
    case WM_DRAWITEM:
    case WM_NOTIFY: return SendMessageW(GetParent(window), message, wParam, lParam);
    default: break;
    }
    // Nothing is known of its colours while the window is being made.
    auto* const self = WindowObject<Win32BoxPeer>(window, message, lParam);
    if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    // The message may end the box.
    const Win32WindowSystem& system = self->m_System;
    bool handled = false;
    Trap([&] { handled = self->Dispatch(message, wParam); }, [&](const RuntimeError& error) { system.Failed(error); });
    if (handled) return TRUE;
    self->m_Pointer.OnMessage(window, message, lParam);
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace tb
