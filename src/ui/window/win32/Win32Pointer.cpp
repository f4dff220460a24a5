#include "ui/window/win32/Win32Pointer.h"

#include <windowsx.h>

#include "ui/window/win32/Win32WindowSystem.h"

namespace tb {

namespace {

bool IsOfMouse(UINT message) {
    switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_LBUTTONUP:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
    case WM_RBUTTONUP:
    case WM_MOUSEMOVE:
    case WM_MOUSELEAVE:
    case WM_CAPTURECHANGED: return true;
    default: return false;
    }
}

}  // namespace

void Win32Pointer::OnMessage(HWND window, UINT message, LPARAM lParam) noexcept {
    if (!IsOfMouse(message)) return;
    // A handler may end the peer; the system outlives it.
    const Win32WindowSystem& system = m_System;
    Trap(
        [&] {
            const std::shared_ptr<void> alive = m_Events.KeepAlive();
            Dispatch(window, message, lParam);
        },
        [&](const RuntimeError& error) { system.Failed(error); });
}

void Win32Pointer::Dispatch(HWND window, UINT message, LPARAM lParam) {
    const TwipPoint at = m_System.ToTwips(PixelPoint{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
    switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: m_Events.Pressed(MouseButton::Left, at); break;
    case WM_LBUTTONUP: m_Events.Released(MouseButton::Left, at); break;
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK: m_Events.Pressed(MouseButton::Right, at); break;
    case WM_RBUTTONUP: m_Events.Released(MouseButton::Right, at); break;
    case WM_MOUSEMOVE:
        Watch(window);
        m_Events.Moved(at);
        break;
    case WM_MOUSELEAVE:
        if (!m_IsOver || m_HasCapture) break;
        m_IsOver = false;
        m_Events.WentAway();
        break;
    case WM_CAPTURECHANGED:
        if (!m_HasCapture) break;
        m_HasCapture = false;
        FindOut(window);
        m_Events.CaptureLost();
        break;
    default: break;
    }
}

void Win32Pointer::Watch(HWND window) {
    m_IsOver = true;
    TRACKMOUSEEVENT track{sizeof track, TME_LEAVE, window, 0};
    TrackMouseEvent(&track);
}

void Win32Pointer::SetCapture(HWND window, bool capture) {
    if (capture == m_HasCapture) return;
    m_HasCapture = capture;
    if (capture) {
        ::SetCapture(window);
        return;
    }
    ReleaseCapture();
    FindOut(window);
}

void Win32Pointer::FindOut(HWND window) const {
    POINT mouse{};
    GetCursorPos(&mouse);
    if (m_IsOver && WindowFromPoint(mouse) != window) PostMessageW(window, WM_MOUSELEAVE, 0, 0);
}

}  // namespace tb
