#include "ui/window/win32/Win32BoxPeer.h"

#include "platform/win32/WindowClass.h"

namespace tb {

namespace {

constexpr const wchar_t* ClassName = L"TrawlbeamBox";

}  // namespace

// What is held by it is reached through it by the keys.
Win32BoxPeer::Win32BoxPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box, bool hasBorder)
    : Win32ChildPeer(system, form, box,
                     {RegisteredClass(), WS_CLIPCHILDREN | WS_CLIPSIBLINGS | WS_GROUP,
                      WS_EX_CONTROLPARENT | (hasBorder ? DWORD{WS_EX_STATICEDGE} : DWORD{0})},
                     this) {}

const wchar_t* Win32BoxPeer::RegisteredClass() {
    RegisterWindowClass(ClassName, &Win32BoxPeer::Procedure);
    return ClassName;
}

LRESULT CALLBACK Win32BoxPeer::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    const auto* const self = WindowObject<const Win32BoxPeer>(window, message, lParam);
    switch (message) {
    case WM_COMMAND:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORSTATIC: return SendMessageW(GetParent(window), message, wParam, lParam);
    case WM_ERASEBKGND: {
        // Nothing is known of its colours while the window is being made.
        if (self == nullptr || !self->m_Window) return TRUE;
        RECT client{};
        GetClientRect(window, &client);
        const auto context = reinterpret_cast<HDC>(wParam);
        FillRect(context, &client, self->Colored(context));
        return TRUE;
    }
    default: return DefWindowProcW(window, message, wParam, lParam);
    }
}

}  // namespace tb
