#include "updater/win32/UpdaterWindow.h"

// After windows.h.
#include <commctrl.h>

#include "components/tbBHBridge/ChannelNames.h"
#include "platform/win32/MessageLoop.h"
#include "platform/win32/Module.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/Win32Machine.h"
#include "platform/win32/Win32Text.h"
#include "platform/win32/WindowClass.h"

namespace tb {

namespace {

constexpr RECT LabelPlace{14, 12, 406, 118};
constexpr RECT BarPlace{14, 124, 406, 142};
constexpr RECT ButtonPlace{170, 122, 250, 146};
constexpr SIZE ClientSize{420, 158};
constexpr DWORD WindowStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;

constexpr UINT_PTR UnreadTimer = 1;
// How long a message waits for somebody to read it.
constexpr UINT UnreadMs = 60000;

int Scaled(LONG length) {
    static const int perInch = DotsPerInch();
    return MulDiv(static_cast<int>(length), perInch, 96);
}

OwnedFont MakeMessageFont() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    return OwnedFont(CreateFontIndirectW(&metrics.lfMessageFont));
}

BOOL CALLBACK CloseOne(HWND window, LPARAM /*unused*/) {
    if (IsWindowVisible(window)) PostMessageW(window, WM_CLOSE, 0, 0);
    return TRUE;
}

// The loop of a message box serves this timer, which belongs to no window.
void CALLBACK CloseUnread(HWND /*window*/, UINT /*message*/, UINT_PTR /*timer*/, DWORD /*time*/) {
    EnumThreadWindows(GetCurrentThreadId(), CloseOne, 0);
}

}  // namespace

UpdaterWindow::UpdaterWindow(const Text& caption, OwnedObject only) : m_Caption(caption), m_Only(std::move(only)) {
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
    const std::wstring className = ToSystem(NormalClasses.Window);
    RegisterWindowClass(className, Procedure,
                        {LoadIconW(OwnModule(), MAKEINTRESOURCEW(1)), GetSysColorBrush(COLOR_BTNFACE)});
    RECT outer{0, 0, Scaled(ClientSize.cx), Scaled(ClientSize.cy)};
    AdjustWindowRect(&outer, WindowStyle, FALSE);
    const int width = static_cast<int>(outer.right - outer.left);
    const int height = static_cast<int>(outer.bottom - outer.top);
    m_Window = OwnedWindow(CreateWindowExW(
        0, className.c_str(), ToSystem(caption).c_str(), WindowStyle, (GetSystemMetrics(SM_CXSCREEN) - width) / 2,
        (GetSystemMetrics(SM_CYSCREEN) - height) / 2, width, height, nullptr, nullptr, OwnModule(), this));
    if (!m_Window) throw SystemError("CreateWindowEx", GetLastError());
    Fill();
    UseDialogKeys(m_Window.Get());
    ShowWindow(m_Window.Get(), SW_SHOWNORMAL);
    UpdateWindow(m_Window.Get());
}

void UpdaterWindow::Fill() {
    m_Font = MakeMessageFont();
    m_Label = Add(L"STATIC", L"", SS_LEFT | SS_NOPREFIX | WS_VISIBLE, LabelPlace, 0);
    m_Bar = Add(PROGRESS_CLASSW, L"", WS_VISIBLE, BarPlace, 0);
    m_Button = Add(L"BUTTON", L"OK", BS_DEFPUSHBUTTON | WS_TABSTOP, ButtonPlace, IDOK);
}

HWND UpdaterWindow::Add(const wchar_t* className, const wchar_t* text, DWORD style, RECT place, UINT id) const {
    const HWND control =
        CreateWindowExW(0, className, text, WS_CHILD | style, Scaled(place.left), Scaled(place.top),
                        Scaled(place.right - place.left), Scaled(place.bottom - place.top), m_Window.Get(),
                        reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), OwnModule(), nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(m_Font.Get()), FALSE);
    return control;
}

void UpdaterWindow::Say(const Text& message) {
    SetWindowTextW(m_Label, ToSystem(message).c_str());
    UpdateWindow(m_Window.Get());
}

void UpdaterWindow::Progress(int percent) { SendMessageW(m_Bar, PBM_SETPOS, static_cast<WPARAM>(percent), 0); }

void UpdaterWindow::Tell(const Text& message) {
    // Before there is a button: what follows serves messages of other programs, and one of them may press it.
    m_IsTelling = true;
    Say(message);
    ShowWindow(m_Bar, SW_HIDE);
    ShowWindow(m_Button, SW_SHOW);
    SetFocus(m_Button);
    SetForegroundWindow(m_Window.Get());
    SetTimer(m_Window.Get(), UnreadTimer, UnreadMs, nullptr);
    ServeMessagesUntil([this] { return !m_IsTelling; });
    KillTimer(m_Window.Get(), UnreadTimer);
}

void UpdaterWindow::Close() {
    m_Window.Close();
    m_Font.Close();
    m_Only.Close();
}

void UpdaterWindow::TellClosed(const Text& message) {
    const UINT_PTR timer = SetTimer(nullptr, 0, UnreadMs, CloseUnread);
    MessageBoxW(nullptr, ToSystem(message).c_str(), ToSystem(m_Caption).c_str(),
                MB_OK | MB_ICONWARNING | MB_SETFOREGROUND);
    KillTimer(nullptr, timer);
}

bool UpdaterWindow::Handle(UINT message, WPARAM wParam) {
    const bool ends = message == WM_CLOSE || (message == WM_TIMER && wParam == UnreadTimer) ||
                      (message == WM_COMMAND && (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL));
    if (ends) m_IsTelling = false;
    return ends;
}

LRESULT CALLBACK UpdaterWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const object = WindowObject<UpdaterWindow>(window, message, lParam);
    if (object != nullptr && object->Handle(message, wParam)) return 0;
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace tb
