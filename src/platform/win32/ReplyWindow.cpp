#include "platform/win32/ReplyWindow.h"

#include <utility>

#include "base/errors.h"
#include "platform/win32/Module.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/Win32WindowText.h"
#include "platform/win32/WindowClass.h"

namespace tb {

namespace {

constexpr const char* ClassName = "TrawlbeamReply";

}  // namespace

ReplyWindow::ReplyWindow() {
    RegisterChannelClass(ClassName, &ReplyWindow::Procedure);
    m_Window =
        OwnedWindow(CreateWindowExA(0, ClassName, "", WS_OVERLAPPED, 0, 0, 0, 0, nullptr, nullptr, OwnModule(), this));
    if (!m_Window) throw SystemError("CreateWindowEx", GetLastError());
}

WindowHandle ReplyWindow::Window() const { return ToWindowHandle(m_Window.Get()); }

std::optional<Text> ReplyWindow::Take() { return std::exchange(m_Text, std::nullopt); }

LRESULT CALLBACK ReplyWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    auto* const self = WindowObject<ReplyWindow>(window, message, lParam);
    if (self == nullptr || message != WM_SETTEXT) return DefWindowProcA(window, message, wParam, lParam);
    Trap([&] { self->m_Text = reinterpret_cast<const char*>(lParam); },
         [](const RuntimeError&) { /* without memory the reply counts as not come */ });
    return TRUE;
}

}  // namespace tb
