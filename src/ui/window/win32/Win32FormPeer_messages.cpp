#include "platform/win32/WindowClass.h"
#include "ui/window/win32/Win32FormPeer.h"

namespace tb {

LRESULT CALLBACK Win32FormPeer::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    auto* const self = WindowObject<Win32FormPeer>(window, message, lParam);
    if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    // The message may end the form, and with it the peer; the system outlives both.
    const Win32WindowSystem& system = self->m_System;
    bool handled = false;
    LRESULT result = 0;
    Trap(
        [&] {
            const std::shared_ptr<void> alive = self->m_Events.KeepAlive();
            handled = self->Dispatch(message, wParam, lParam, result);
        },
        [&](const RuntimeError& error) { system.Failed(error); });
    return handled ? result : DefWindowProcW(window, message, wParam, lParam);
}

bool Win32FormPeer::Dispatch(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    switch (message) {
    case WM_CLOSE:
        // Whatever the handlers do, it is not the system that destroys the window.
        Trap([this] { m_Events.CloseAsked(); },
             [&system = m_System](const RuntimeError& error) { system.Failed(error); });
        return true;
    case WM_QUERYENDSESSION: result = m_Events.SessionEnding() ? TRUE : FALSE; return true;
    case WM_ENDSESSION:
        if (wParam != FALSE) m_Events.SessionEnds();
        return true;
    case WM_MOVE:
    case WM_SIZE: OnPlaced(); return true;
    case WM_TIMER: OnTimer(wParam); return true;
    case WM_COMMAND: return OnCommand(reinterpret_cast<HWND>(lParam), LOWORD(wParam), HIWORD(wParam));
    case WM_ACTIVATE: OnActivate(LOWORD(wParam) != WA_INACTIVE); return false;
    case WM_SETFOCUS: return OnFocus();
    case WM_SETCURSOR: result = TRUE; return OnCursor(LOWORD(lParam));
    case WM_CTLCOLORBTN:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORSTATIC: return OnColor(reinterpret_cast<HWND>(lParam), reinterpret_cast<HDC>(wParam), result);
    case WM_ERASEBKGND:
        OnEraseBackground(reinterpret_cast<HDC>(wParam));
        result = TRUE;
        return true;
    default: return false;
    }
}

void Win32FormPeer::OnPlaced() {
    if (!m_Placed) return;
    const bool minimized = IsIconic(Handle()) != FALSE;
    const bool maximized = IsZoomed(Handle()) != FALSE;
    const WindowStates state = minimized   ? WindowStates::Minimized
                               : maximized ? WindowStates::Maximized
                                           : WindowStates::Normal;
    RECT place{};
    GetWindowRect(Handle(), &place);
    const TwipRect pixels{static_cast<std::int32_t>(place.left), static_cast<std::int32_t>(place.top),
                          static_cast<std::int32_t>(place.right - place.left),
                          static_cast<std::int32_t>(place.bottom - place.top)};
    // The program's own moves come back here; a size in twips need not be one of whole pixels and is left as it was
    // set.
    if (state == m_State && (minimized || pixels == m_Pixels)) return;
    m_State = state;
    if (!minimized) m_Pixels = pixels;
    const TwipScale scale = m_System.Scale();
    m_Events.WindowPlaced(state, {scale.ToTwips(pixels.Left), scale.ToTwips(pixels.Top), scale.ToTwips(pixels.Width),
                                  scale.ToTwips(pixels.Height)});
}

void Win32FormPeer::OnTimer(UINT_PTR id) {
    // A message of a timer that has been stopped since may still come.
    const auto timer = m_Timers.find(id);
    if (timer == m_Timers.end()) return;
    TimerEvents& events = *timer->second;
    const std::shared_ptr<void> alive = events.KeepAlive();
    events.Tick();
}

Win32Child* Win32FormPeer::Child(HWND window) const {
    const auto child = m_Children.find(window);
    return child != m_Children.end() ? child->second : nullptr;
}

bool Win32FormPeer::OnCommand(HWND child, WORD id, WORD code) {
    Win32Child* sender = Child(child);
    // The keys come as commands that no child has sent.
    if (sender == nullptr && (id == IDOK || id == IDCANCEL)) {
        const HWND button = ButtonOfKey(id);
        if (button == nullptr || !IsWindowEnabled(button) || !IsWindowVisible(button)) return true;
        sender = Child(button);
        code = BN_CLICKED;
    }
    if (sender == nullptr) return false;
    sender->OnCommand(code);
    return true;
}

HWND Win32FormPeer::ButtonOfKey(WORD id) const {
    if (id == IDCANCEL) return m_CancelButton;
    const HWND focused = GetFocus();
    const LRESULT code = Child(focused) != nullptr ? SendMessageW(focused, WM_GETDLGCODE, 0, 0) : 0;
    return (code & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0 ? focused : m_DefaultButton;
}

void Win32FormPeer::OnActivate(bool active) {
    if (active) return;
    const HWND focused = GetFocus();
    if (IsChild(Handle(), focused)) m_Focused = focused;
}

bool Win32FormPeer::OnFocus() {
    if (m_Focused == nullptr || !IsWindowEnabled(m_Focused) || !IsWindowVisible(m_Focused)) return false;
    ::SetFocus(m_Focused);
    return true;
}

bool Win32FormPeer::OnCursor(WORD area) {
    if (m_Pointer != MousePointers::Hourglass || area != HTCLIENT) return false;
    SetCursor(SystemCursor(IDC_WAIT));
    return true;
}

bool Win32FormPeer::OnColor(HWND child, HDC context, LRESULT& result) {
    Win32Child* const asking = Child(child);
    if (asking == nullptr) return false;
    result = reinterpret_cast<LRESULT>(asking->OnColor(context));
    return true;
}

void Win32FormPeer::OnEraseBackground(HDC context) {
    RECT client{};
    GetClientRect(Handle(), &client);
    SetDCBrushColor(context, ToColorRef(m_Colors.Back));
    FillRect(context, &client, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

}  // namespace tb
