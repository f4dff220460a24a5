#include "platform/win32/Win32TrayIcon.h"

// After windows.h, which the header includes.
#include <shellapi.h>

#include "platform/win32/Win32Text.h"
#include "platform/win32/Win32WindowText.h"

namespace tb {

namespace {

constexpr const wchar_t* PropertyName = L"TrawlbeamTrayIcon";

HICON ToIcon(std::int32_t number) { return reinterpret_cast<HICON>(static_cast<INT_PTR>(number)); }

template <size_t Size>
void Put(wchar_t (&room)[Size], const Text& text) {
    const size_t count = ToSystem(text.c_str()).copy(room, Size - 1);
    room[count] = L'\0';
}

NOTIFYICONDATAW Fill(NotifyIconCall call, const NotifyIconRecord& record) {
    NOTIFYICONDATAW data{};
    data.cbSize = record.HasBalloons ? NOTIFYICONDATAW_V2_SIZE : NOTIFYICONDATAW_V1_SIZE;
    data.hWnd = ToHwnd(record.Window);
    data.uID = TrayIconId;
    data.uFlags = record.Flags;
    data.uCallbackMessage = TrayIconMessage;
    data.hIcon = ToIcon(record.Icon);
    Put(data.szTip, record.Tip);
    if (!record.HasBalloons) return data;
    Put(data.szInfo, record.Info);
    Put(data.szInfoTitle, record.InfoTitle);
    data.dwInfoFlags = record.InfoFlags;
    data.uTimeout = call == NotifyIconCall::SetVersion ? record.Version : record.Timeout;
    return data;
}

}  // namespace

void Win32TrayIcon::Listen(WindowHandle window, TrayIconListener& listener) {
    StopListening();
    const HWND owner = ToHwnd(window);
    if (!IsWindow(owner)) return;
    m_TaskbarCreated = RegisterWindowMessageW(L"TaskbarCreated");
    SetPropW(owner, PropertyName, this);
    m_Listener = &listener;
    m_Window = owner;
    m_Original =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrW(owner, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)));
}

void Win32TrayIcon::StopListening() noexcept {
    if (m_Listener == nullptr) return;
    m_Listener = nullptr;
    SetWindowLongPtrW(m_Window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_Original));
    RemovePropW(m_Window, PropertyName);
    m_Window = nullptr;
}

LRESULT CALLBACK Win32TrayIcon::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    auto* const self = static_cast<Win32TrayIcon*>(GetPropW(window, PropertyName));
    if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    const WNDPROC original = self->m_Original;
    // What the listener does may end the listening and the window.
    const auto failed = [self](const RuntimeError& error) {
        if (self->m_Failed) self->m_Failed(error);
    };
    if (message == TrayIconMessage && wParam == TrayIconId) {
        const auto mouse = static_cast<std::uint32_t>(lParam);
        Trap([&] { self->m_Listener->TrayMessage(mouse); }, failed);
        return 0;
    }
    if (message == self->m_TaskbarCreated && message != 0) Trap([&] { self->m_Listener->TaskbarCreated(); }, failed);
    if (message == WM_NCDESTROY) self->StopListening();
    return CallWindowProcW(original, window, message, wParam, lParam);
}

bool Win32TrayIcon::Notify(NotifyIconCall call, const NotifyIconRecord& record) noexcept {
    return TrapOr(
        false,
        [&] {
            NOTIFYICONDATAW data = Fill(call, record);
            return Shell_NotifyIconW(static_cast<DWORD>(call), &data) != FALSE;
        },
        [](const RuntimeError&) { /* without memory for the texts there is no icon, as without a notification area */
        });
}

}  // namespace tb
