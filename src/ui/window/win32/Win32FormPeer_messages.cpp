#include "platform/win32/MessageLoop.h"
#include "platform/win32/WindowClass.h"
#include "ui/window/win32/Win32FormPeer.h"

namespace tb {

namespace {

// The colours of the system have changed; the message of a form to itself.
constexpr UINT ColorsHaveChanged = WM_APP + 1;

bool IsDown(int key) { return GetKeyState(key) < 0; }

// Keys that move among the controls, or press them.
bool IsOfDialogs(std::int32_t key) {
    switch (key) {
    case VK_TAB:
    case VK_MENU:
    case VK_LEFT:
    case VK_RIGHT:
    case VK_UP:
    case VK_DOWN: return true;
    default: return false;
    }
}

}  // namespace

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
    case WM_SIZE:
        m_Canvas->Sized();
        OnPlaced();
        return true;
    case WM_MOVE: OnPlaced(); return true;
    case WM_TIMER: OnTimer(wParam); return true;
    case WM_ACTIVATE: OnActivate(wParam, lParam); return true;
    case WM_MOUSEACTIVATE: result = MA_NOACTIVATE; return m_StaysInactive;
    case WM_SETFOCUS: return OnFocus();
    case WM_SETCURSOR: result = TRUE; return OnCursor(LOWORD(lParam));
    case WM_SETTINGCHANGE:
        if (wParam == SPI_SETHIGHCONTRAST) OnSystemColors();
        return false;
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED: OnSystemColors(); return false;
    case ColorsHaveChanged:
        m_ColorsHaveChanged = false;
        m_Canvas->OnSystemColors();
        for (const auto& [window, child] : m_Children) child->OnSystemColors();
        m_Events.SystemColorsChanged();
        return true;
    case KeyAsked: result = OnKey(static_cast<std::int32_t>(wParam)) ? TRUE : FALSE; return true;
    default: return DispatchOfChildren(message, wParam, lParam, result);
    }
}

bool Win32FormPeer::DispatchOfChildren(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    switch (message) {
    case WM_COMMAND: return OnCommand(reinterpret_cast<HWND>(lParam), LOWORD(wParam), HIWORD(wParam));
    case WM_DRAWITEM: result = TRUE; return OnDraw(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
    case WM_CTLCOLORBTN:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORSTATIC: return OnColor(reinterpret_cast<HWND>(lParam), reinterpret_cast<HDC>(wParam), result);
    default: break;
    }
    result = TRUE;
    if (m_Canvas->OnMessage(message, wParam)) return true;
    m_Pointer.OnMessage(Handle(), message, lParam);
    return false;
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
    const PixelRect pixels{static_cast<std::int32_t>(place.left), static_cast<std::int32_t>(place.top),
                           static_cast<std::int32_t>(place.right - place.left),
                           static_cast<std::int32_t>(place.bottom - place.top)};
    // The program's own moves come back here; a size in twips need not be one of whole pixels and is left as it was
    // set.
    if (state == m_State && (minimized || pixels == m_Pixels)) return;
    m_State = state;
    if (!minimized) m_Pixels = pixels;
    m_Events.WindowPlaced(state, m_System.ToTwips(place));
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
    Win32Child* const sender = Child(child);
    if (sender != nullptr) {
        sender->OnCommand(code);
        return true;
    }
    // The keys come as commands that no child has sent.
    if (id != IDOK && id != IDCANCEL) return false;
    OnDialogKey(id);
    return true;
}

void Win32FormPeer::OnDialogKey(WORD id) {
    const HWND button = id == IDOK ? EnterButton() : m_CancelButton;
    Win32Child* const pressed = Child(button);
    if (pressed != nullptr && IsWindowEnabled(button) && IsWindowVisible(button)) {
        pressed->OnCommand(BN_CLICKED);
    } else if (id == IDCANCEL) {
        m_Events.CloseAsked();
    }
}

bool Win32FormPeer::OnKey(std::int32_t key) {
    if (IsOfDialogs(key) && !m_KeyboardInUse) {
        m_KeyboardInUse = true;
        if (Child(GetFocus()) != nullptr) InvalidateRect(GetFocus(), nullptr, FALSE);
    }
    return m_Events.KeyPressed({key, IsDown(VK_SHIFT), IsDown(VK_CONTROL), IsDown(VK_MENU)});
}

void Win32FormPeer::OnActivate(WPARAM wParam, LPARAM lParam) {
    const bool active = LOWORD(wParam) != WA_INACTIVE;
    const HWND focused = GetFocus();
    if (!active && IsChild(Handle(), focused)) m_Focused = focused;
    FormEvents& events = m_Events;
    // The focus goes where it was before anybody is told; the peer may go on the way.
    DefWindowProcW(Handle(), WM_ACTIVATE, wParam, lParam);
    events.Activated(active);
}

void Win32FormPeer::OnSystemColors() {
    if (m_ColorsHaveChanged) return;
    m_ColorsHaveChanged = PostMessageW(Handle(), ColorsHaveChanged, 0, 0) != FALSE;
}

bool Win32FormPeer::OnDraw(const DRAWITEMSTRUCT& item) {
    Win32Child* const child = Child(item.hwndItem);
    if (child == nullptr) return false;
    child->OnDraw(item);
    return true;
}

bool Win32FormPeer::OnFocus() {
    if (m_Focused == nullptr || !IsWindowEnabled(m_Focused) || !IsWindowVisible(m_Focused)) return false;
    ::SetFocus(m_Focused);
    return true;
}

bool Win32FormPeer::OnCursor(WORD area) {
    if (m_Cursor != MousePointers::Hourglass || area != HTCLIENT) return false;
    SetCursor(SystemCursor(IDC_WAIT));
    return true;
}

bool Win32FormPeer::OnColor(HWND child, HDC context, LRESULT& result) {
    Win32Child* const asking = Child(child);
    if (asking == nullptr) return false;
    result = reinterpret_cast<LRESULT>(asking->OnColor(context));
    return true;
}

}  // namespace tb
