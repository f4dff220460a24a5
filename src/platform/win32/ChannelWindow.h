// A hidden top-level window with a text box into which other processes set text. It moves text and decides nothing.
// Thread: all calls and handlers run on the thread that made it, whose message loop serves it.
#pragma once

#include <functional>

#include "base/errors.h"
#include "base/text.h"
#include "platform/win32/ChannelTextBox.h"
#include "platform/win32/Handle.h"

namespace tb {

class ChannelWindow {
public:
    struct Names {
        const char* WindowClass;
        const char* Caption;
        const char* TextBoxClass;
    };

    struct Handlers {
        // A text, never empty, was set into the box; its sender waits. The box is cleared when this returns. While it
        // waits in a call that serves messages, the text of another sender is handled inside, from start to end.
        std::function<void(const Text&)> TextSet;
        // The window was asked to close, or the session ends. The window stays until the object goes.
        std::function<void()> CloseAsked;
        // `TextSet` or `CloseAsked` has thrown: nothing propagates, the box is cleared all the same.
        std::function<void(const RuntimeError&)> Failed;
    };

    // The text box takes texts of any length, single-byte, up to their first NUL. Error 51 when there is no desktop to
    // make windows on.
    ChannelWindow(const Names& names, Handlers handlers);
    ChannelWindow(const ChannelWindow&) = delete;
    ChannelWindow& operator=(const ChannelWindow&) = delete;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    OwnedWindow MakeWindow(const Names& names);
    void OnTextChanged() noexcept;
    void Guarded(const std::function<void()>& body) noexcept;

    Handlers m_Handlers;
    OwnedWindow m_Window;
    ChannelTextBox m_TextBox;
};

}  // namespace tb
