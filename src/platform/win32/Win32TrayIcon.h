// The notification area of the desktop.
// Thread: the one of the window that listens.
#pragma once

#include <windows.h>

#include <functional>

#include "base/errors.h"
#include "platform/TrayIcon.h"

namespace tb {

class Win32TrayIcon : public TrayIcon {
public:
    // `failed` gets what the listener throws; nothing propagates. It must not throw. This object must outlive what the
    // listener does.
    explicit Win32TrayIcon(std::function<void(const RuntimeError&)> failed) : m_Failed(std::move(failed)) {}
    Win32TrayIcon(const Win32TrayIcon&) = delete;
    Win32TrayIcon& operator=(const Win32TrayIcon&) = delete;
    ~Win32TrayIcon() override { StopListening(); }

    // Stands in front of the window's procedure. Whoever does the same later must be gone first.
    void Listen(WindowHandle window, TrayIconListener& listener) override;
    void StopListening() noexcept override;
    bool Notify(NotifyIconCall call, const NotifyIconRecord& record) noexcept override;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

    std::function<void(const RuntimeError&)> m_Failed;
    TrayIconListener* m_Listener = nullptr;
    HWND m_Window = nullptr;
    WNDPROC m_Original = nullptr;
    // The message by which the shell tells that it has started.
    UINT m_TaskbarCreated = 0;
};

}  // namespace tb
