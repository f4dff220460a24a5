#include "platform/win32/ChannelTextBox.h"

#include <algorithm>

#include "base/errors.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/WindowClass.h"

namespace tb {

ChannelTextBox::ChannelTextBox(const char* className, HWND parent)
    : m_Edit(RegisterSuperclass(className, "EDIT", &ChannelTextBox::Procedure)),
      m_Window(
          CreateWindowExA(0, className, "", WS_CHILD, 0, 0, 0, 0, parent, nullptr, GetModuleHandleA(nullptr), this)) {
    if (!m_Window) throw SystemError("CreateWindowEx", GetLastError());
}

LRESULT CALLBACK ChannelTextBox::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    auto* const self = WindowObject<ChannelTextBox>(window, message, lParam);
    if (self == nullptr) return DefWindowProcA(window, message, wParam, lParam);
    switch (message) {
    case WM_SETTEXT: return self->OnSetText(reinterpret_cast<const char*>(lParam)) ? TRUE : FALSE;
    case WM_GETTEXTLENGTH: return static_cast<LRESULT>(self->m_Content.size());
    case WM_GETTEXT: return self->OnGetText(reinterpret_cast<char*>(lParam), wParam);
    default: return CallWindowProcA(self->m_Edit, window, message, wParam, lParam);
    }
}

bool ChannelTextBox::OnSetText(const char* content) noexcept {
    bool taken = false;
    Trap(
        [&] {
            m_Content = content == nullptr ? "" : content;
            taken = true;
        },
        [](const RuntimeError&) { /* without memory the sender gets no answer */ });
    if (!taken) return false;
    SendMessageA(GetParent(Window()), WM_COMMAND, MAKEWPARAM(0, EN_CHANGE), reinterpret_cast<LPARAM>(Window()));
    return true;
}

LRESULT ChannelTextBox::OnGetText(char* buffer, size_t size) const {
    if (size == 0) return 0;
    const size_t count = m_Content.copy(buffer, size - 1);
    buffer[count] = '\0';
    return static_cast<LRESULT>(count);
}

void ChannelTextBox::SetContent(const char* content) { SetWindowTextA(Window(), content); }

}  // namespace tb
