#include "ui/window/win32/Win32FormPeer.h"

#include "platform/win32/Module.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/Win32Text.h"
#include "platform/win32/Win32WindowText.h"
#include "platform/win32/WindowClass.h"
#include "ui/window/win32/Win32BoxPeer.h"
#include "ui/window/win32/Win32ButtonPeers.h"
#include "ui/window/win32/Win32LabelPeer.h"
#include "ui/window/win32/Win32PopupMenu.h"
#include "ui/window/win32/Win32TextBoxPeer.h"
#include "ui/window/win32/Win32TimerPeer.h"

namespace tb {

namespace {

struct Styles {
    DWORD Style;
    DWORD Extended;
};

Styles StylesOf(BorderStyles border) {
    constexpr DWORD Titled = WS_CAPTION | WS_SYSMENU;
    switch (border) {
    case BorderStyles::None: return {WS_POPUP, 0};
    case BorderStyles::FixedSingle: return {Titled | WS_MINIMIZEBOX, 0};
    case BorderStyles::Sizable: return {WS_OVERLAPPEDWINDOW, 0};
    case BorderStyles::FixedDialog: return {Titled, WS_EX_DLGMODALFRAME};
    case BorderStyles::FixedTool: return {Titled, WS_EX_TOOLWINDOW};
    case BorderStyles::SizableTool: return {Titled | WS_THICKFRAME, WS_EX_TOOLWINDOW};
    }
    return {WS_OVERLAPPEDWINDOW, 0};
}

// The bits of a window's style that its border decides.
constexpr DWORD BorderBits = WS_POPUP | WS_OVERLAPPEDWINDOW;
constexpr DWORD BorderBitsExtended = WS_EX_DLGMODALFRAME | WS_EX_TOOLWINDOW;

void ReplaceBits(HWND window, int index, DWORD bits, DWORD value) {
    const auto old = static_cast<DWORD>(GetWindowLongPtrW(window, index));
    SetWindowLongPtrW(window, index, static_cast<LONG_PTR>((old & ~bits) | value));
}

}  // namespace

Win32FormPeer::Win32FormPeer(const Win32WindowSystem& system, FormEvents& events)
    : Win32Peer(system), m_Events(events) {
    const std::wstring className = ToSystem(system.Names().Form);
    RegisterWindowClass(className, &Win32FormPeer::Procedure);
    m_Window = OwnedWindow(CreateWindowExW(0, className.c_str(), L"", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, 0, 0, 0,
                                           nullptr, nullptr, OwnModule(), this));
    if (!m_Window) throw SystemError("CreateWindowEx", GetLastError());
}

WindowHandle Win32FormPeer::Window() const { return ToWindowHandle(Handle()); }

TwipSize Win32FormPeer::ClientSize() const {
    RECT client{};
    GetClientRect(Handle(), &client);
    const TwipScale scale = m_System.Scale();
    return {scale.ToTwips(static_cast<std::int32_t>(client.right)),
            scale.ToTwips(static_cast<std::int32_t>(client.bottom))};
}

void Win32FormPeer::SetBounds(const TwipRect& bounds) {
    m_Placed = true;
    Win32Peer::SetBounds(bounds);
}

int Win32FormPeer::ShowCommand() const {
    switch (m_State) {
    case WindowStates::Minimized: return SW_SHOWMINIMIZED;
    case WindowStates::Maximized: return SW_SHOWMAXIMIZED;
    case WindowStates::Normal: break;
    }
    return SW_SHOWNORMAL;
}

void Win32FormPeer::SetVisible(bool visible) {
    for (const auto& [window, child] : m_Children) child->OnFormVisible(visible);
    ShowWindow(Handle(), visible ? ShowCommand() : SW_HIDE);
}

void Win32FormPeer::SetWindowState(WindowStates state) {
    m_State = state;
    if (IsVisible()) ShowWindow(Handle(), ShowCommand());
}

void Win32FormPeer::SetBorderStyle(BorderStyles style) {
    const Styles styles = StylesOf(style);
    ReplaceBits(Handle(), GWL_STYLE, BorderBits, styles.Style);
    ReplaceBits(Handle(), GWL_EXSTYLE, BorderBitsExtended, styles.Extended);
    SetWindowPos(Handle(), nullptr, 0, 0, 0, 0,
                 SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void Win32FormPeer::SetIcon(const PictureRef& picture) {
    Win32Icon big(picture, GetSystemMetrics(SM_CXICON));
    Win32Icon little(picture, GetSystemMetrics(SM_CXSMICON));
    SendMessageW(Handle(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(big.Get()));
    SendMessageW(Handle(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(little.Get()));
    m_BigIcon = std::move(big);
    m_SmallIcon = std::move(little);
}

IconNumber Win32FormPeer::Icon() const { return static_cast<IconNumber>(reinterpret_cast<INT_PTR>(m_SmallIcon.Get())); }

bool Win32FormPeer::SetForeground() { return SetForegroundWindow(Handle()) != FALSE; }

void Win32FormPeer::SetTopMost(bool onTop) {
    SetWindowPos(Handle(), onTop ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
}

void Win32FormPeer::SetMousePointer(MousePointers pointer) {
    m_Pointer = pointer;
    // Where the mouse stands now; from the next move on the window is asked.
    POINT mouse{};
    GetCursorPos(&mouse);
    const HWND below = WindowFromPoint(mouse);
    if (below != Handle() && !IsChild(Handle(), below)) return;
    SetCursor(SystemCursor(pointer == MousePointers::Hourglass ? IDC_WAIT : IDC_ARROW));
}

void Win32FormPeer::RemoveChild(HWND window) {
    m_Children.erase(window);
    m_Tips.Remove(window);
    if (m_DefaultButton == window) m_DefaultButton = nullptr;
    if (m_CancelButton == window) m_CancelButton = nullptr;
    if (m_Focused == window) m_Focused = nullptr;
}

void Win32FormPeer::SetTip(HWND child, const Text& text) { m_Tips.Set(Handle(), child, text); }

std::int32_t Win32FormPeer::PopupMenu(const std::vector<MenuRow>& rows, std::uint32_t flags) {
    return TrackPopup(Handle(), rows, flags);
}

void Win32FormPeer::EndModes() {
    GUITHREADINFO state{};
    state.cbSize = sizeof state;
    if (!GetGUIThreadInfo(GetCurrentThreadId(), &state)) return;
    if (state.hwndMenuOwner == Handle()) EndMenu();
    if (state.hwndMoveSize == Handle()) SendMessageW(Handle(), WM_CANCELMODE, 0, 0);
}

std::unique_ptr<BoxPeer> Win32FormPeer::MakeBox(BoxPeer* box, bool hasBorder) {
    return std::make_unique<Win32BoxPeer>(m_System, *this, box, hasBorder);
}

std::unique_ptr<WindowPeer> Win32FormPeer::MakeLabel(BoxPeer* box, bool useMnemonic) {
    return std::make_unique<Win32LabelPeer>(m_System, *this, box, useMnemonic);
}

std::unique_ptr<CommandButtonPeer> Win32FormPeer::MakeCommandButton(BoxPeer* box, ButtonEvents& events) {
    return std::make_unique<Win32CommandButtonPeer>(m_System, *this, box, events);
}

std::unique_ptr<OptionButtonPeer> Win32FormPeer::MakeOptionButton(BoxPeer* box, ButtonEvents& events) {
    return std::make_unique<Win32OptionButtonPeer>(m_System, *this, box, events);
}

std::unique_ptr<TextBoxPeer> Win32FormPeer::MakeTextBox(TextBoxEvents& events, bool multiLine) {
    return std::make_unique<Win32TextBoxPeer>(m_System, *this, events, multiLine);
}

std::unique_ptr<TimerPeer> Win32FormPeer::MakeTimer(TimerEvents& events) {
    return std::make_unique<Win32TimerPeer>(*this, ++m_TimersMade, events);
}

}  // namespace tb
