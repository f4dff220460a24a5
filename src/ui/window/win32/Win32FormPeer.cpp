#include "ui/window/win32/Win32FormPeer.h"

#include "platform/win32/Module.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/Win32Text.h"
#include "platform/win32/Win32WindowText.h"
#include "platform/win32/WindowClass.h"
#include "ui/window/win32/Win32BoxPeer.h"
#include "ui/window/win32/Win32CommandButtonPeer.h"
#include "ui/window/win32/Win32LabelPeer.h"
#include "ui/window/win32/Win32OptionButtonPeer.h"
#include "ui/window/win32/Win32PopupMenu.h"
#include "ui/window/win32/Win32TextBoxPeer.h"
#include "ui/window/win32/Win32TimerPeer.h"
#include "ui/window/win32/Win32Windowless.h"

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

// The bits of a window's style that depend on its border.
constexpr DWORD BorderBits = WS_POPUP | WS_OVERLAPPEDWINDOW;
constexpr DWORD BorderBitsExtended = WS_EX_DLGMODALFRAME | WS_EX_TOOLWINDOW | WS_EX_APPWINDOW;

constexpr BYTE Solid = 255;

}  // namespace

Win32FormPeer::Win32FormPeer(const Win32WindowSystem& system, FormEvents& events, PointerEvents& pointer)
    : Win32DrawnPeer(system, pointer), m_Events(events) {
    const std::wstring className = ToSystem(system.Names().Form);
    RegisterWindowClass(className, &Win32FormPeer::Procedure);
    m_Window = OwnedWindow(CreateWindowExW(0, className.c_str(), L"", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, 0, 0, 0,
                                           nullptr, nullptr, OwnModule(), this));
    if (!m_Window) throw SystemError("CreateWindowEx", GetLastError());
    m_Canvas->Attach(Handle());
    UseDialogKeys(Handle());
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

void Win32FormPeer::ShowBy(int command) {
    for (const auto& [window, child] : m_Children) child->OnFormVisible(command != SW_HIDE);
    // What the window tells on the way may end the peer.
    const HWND window = Handle();
    ShowWindow(window, command);
    // At once, and not behind what else waits.
    if (command != SW_HIDE) RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void Win32FormPeer::SetVisible(bool visible) {
    m_StaysInactive = false;
    ShowBy(visible ? ShowCommand() : SW_HIDE);
}

void Win32FormPeer::ShowInactive() {
    m_StaysInactive = true;
    ShowBy(SW_SHOWNOACTIVATE);
}

void Win32FormPeer::SetWindowState(WindowStates state) {
    m_State = state;
    if (IsVisible()) ShowWindow(Handle(), ShowCommand());
}

void Win32FormPeer::SetBorderStyle(BorderStyles style) {
    m_Border = style;
    ApplyStyles();
}

void Win32FormPeer::SetInTaskList(bool inTaskList) {
    m_InTaskList = inTaskList;
    ApplyStyles();
}

void Win32FormPeer::ApplyStyles() {
    Styles styles = StylesOf(m_Border);
    if (m_Border == BorderStyles::None) {
        if (m_InTaskList) styles.Style |= WS_SYSMENU | WS_MINIMIZEBOX;
        styles.Extended |= m_InTaskList ? WS_EX_APPWINDOW : WS_EX_TOOLWINDOW;
    }
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

void Win32FormPeer::Flash() {
    FLASHWINFO flash{sizeof flash, Handle(), FLASHW_ALL | FLASHW_TIMERNOFG, 0, 0};
    FlashWindowEx(&flash);
}

void Win32FormPeer::SetTopMost(bool onTop, bool activate) {
    SetWindowPos(Handle(), onTop ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | (activate ? 0U : UINT{SWP_NOACTIVATE}));
}

void Win32FormPeer::SetOwner(FormPeer* owner) {
    const HWND window = owner != nullptr ? static_cast<Win32FormPeer*>(owner)->Handle() : nullptr;
    SetWindowLongPtrW(Handle(), GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(window));
}

void Win32FormPeer::SetRoundRegion(PixelPoint from, PixelPoint to, std::int32_t corner) {
    OwnedRegion region(CreateRoundRectRgn(from.X, from.Y, to.X, to.Y, corner, corner));
    // From then on it is the system's, which deletes it.
    if (region && SetWindowRgn(Handle(), region.Get(), TRUE)) static_cast<void>(region.Release());
}

void Win32FormPeer::SetLayering(const Layering& layering) {
    const bool isLayered = layering.ClearColor || layering.Alpha != Solid;
    ReplaceBits(Handle(), GWL_EXSTYLE, WS_EX_LAYERED, isLayered ? WS_EX_LAYERED : 0);
    if (isLayered) {
        SetLayeredWindowAttributes(Handle(), ToColorRef(layering.ClearColor.value_or(0)), layering.Alpha,
                                   LWA_ALPHA | (layering.ClearColor ? DWORD{LWA_COLORKEY} : DWORD{0}));
    }
    RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

void Win32FormPeer::DragByCaption() {
    const std::shared_ptr<void> alive = m_Events.KeepAlive();
    POINT mouse{};
    GetCursorPos(&mouse);
    ReleaseCapture();
    // The peer may be gone when this returns.
    SendMessageW(Handle(), WM_NCLBUTTONDOWN, HTCAPTION,
                 MAKELPARAM(static_cast<WORD>(mouse.x), static_cast<WORD>(mouse.y)));
}

void Win32FormPeer::SetMousePointer(MousePointers pointer) {
    m_Cursor = pointer;
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

void Win32FormPeer::SetDefaultButton(HWND button) {
    ShowDefaultButton();
    m_DefaultButton = button;
    ShowDefaultButton();
}

HWND Win32FormPeer::EnterButton() const {
    const HWND focused = GetFocus();
    const Win32Child* const child = Child(focused);
    return child != nullptr && child->TakesEnter() ? focused : m_DefaultButton;
}

void Win32FormPeer::ShowDefaultButton() const {
    if (m_DefaultButton != nullptr) InvalidateRect(m_DefaultButton, nullptr, FALSE);
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

std::unique_ptr<BoxPeer> Win32FormPeer::MakeBox(BoxPeer* box, PointerEvents& events, bool hasBorder) {
    return std::make_unique<Win32BoxPeer>(m_System, *this, box, events, hasBorder);
}

std::unique_ptr<LabelPeer> Win32FormPeer::MakeLabel(BoxPeer* box, PointerEvents& events, bool useMnemonic) {
    return std::make_unique<Win32LabelPeer>(m_System, *this, box, events, useMnemonic);
}

std::unique_ptr<ImagePeer> Win32FormPeer::MakeImage(BoxPeer* box) {
    return std::make_unique<Win32ImagePeer>(m_System, CanvasOf(*this, box));
}

std::unique_ptr<LinePeer> Win32FormPeer::MakeLine(BoxPeer* box) {
    return std::make_unique<Win32LinePeer>(m_System, CanvasOf(*this, box));
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
