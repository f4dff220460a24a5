// A single-line edit control, of a class of its own name, that keeps its text itself. The system's control lays out
// whatever is set into it, shown or not: with text of other processes that costs seconds for 64 KB of neutral
// characters and has crashed inside the layout, which loses the notification and leaves the sender without an answer.
// Thread: the one that made it.
#pragma once

#include "base/text.h"
#include "platform/win32/Handle.h"

namespace tb {

class ChannelTextBox {
public:
    // A hidden child of `parent`. Each text that is set, the empty one too, sends `parent` a WM_COMMAND with EN_CHANGE
    // while the sender waits, as an edit control does. Error 51.
    ChannelTextBox(const char* className, HWND parent);
    ChannelTextBox(const ChannelTextBox&) = delete;
    ChannelTextBox& operator=(const ChannelTextBox&) = delete;

    HWND Window() const { return m_Window.Get(); }
    // The bytes that were set last, any number of them, up to the first NUL.
    const Text& Content() const { return m_Content; }
    void SetContent(const char* content);

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    bool OnSetText(const char* content) noexcept;
    LRESULT OnGetText(char* buffer, size_t size) const;

    Text m_Content;
    // The system's edit control, which handles all that does not concern the text.
    WNDPROC m_Edit = nullptr;
    OwnedWindow m_Window;
};

}  // namespace tb
