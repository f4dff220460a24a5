#include "platform/win32/ChannelWindow.h"

#include <utility>

#include "platform/win32/Win32Errors.h"
#include "platform/win32/WindowClass.h"

namespace tb {

ChannelWindow::ChannelWindow(const Names& names, Handlers handlers)
    : m_Handlers(std::move(handlers)), m_Window(MakeWindow(names)), m_TextBox(names.TextBoxClass, m_Window.Get()) {}

OwnedWindow ChannelWindow::MakeWindow(const Names& names) {
    RegisterWindowClass(names.WindowClass, &ChannelWindow::Procedure);
    // Top-level and never shown: a message-only window would not be found by clients.
    OwnedWindow window(CreateWindowExA(0, names.WindowClass, names.Caption, WS_OVERLAPPED, 0, 0, 0, 0, nullptr, nullptr,
                                       GetModuleHandleA(nullptr), this));
    if (!window) throw SystemError("CreateWindowEx", GetLastError());
    return window;
}

LRESULT CALLBACK ChannelWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    auto* const self = WindowObject<ChannelWindow>(window, message, lParam);
    if (self == nullptr) return DefWindowProcA(window, message, wParam, lParam);
    switch (message) {
    case WM_COMMAND:
        if (HIWORD(wParam) != EN_CHANGE || reinterpret_cast<HWND>(lParam) != self->m_TextBox.Window()) break;
        self->OnTextChanged();
        return 0;
    case WM_ENDSESSION:
        if (wParam == FALSE) break;
        [[fallthrough]];
    case WM_CLOSE: self->Guarded(self->m_Handlers.CloseAsked); return 0;
    default: break;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

void ChannelWindow::OnTextChanged() noexcept {
    // This is the change that clearing the box makes.
    if (m_TextBox.Content().empty()) return;
    // The box may change while the text is handled, so the text is taken out first.
    Guarded([this] { m_Handlers.TextSet(Text(m_TextBox.Content())); });
    m_TextBox.SetContent("");
}

void ChannelWindow::Guarded(const std::function<void()>& body) noexcept {
    Trap(body, [this](const RuntimeError& error) { m_Handlers.Failed(error); });
}

}  // namespace tb
