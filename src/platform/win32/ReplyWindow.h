// A hidden window that keeps the text which another process sets into it: the client's end of a request.
// Thread: the one that made it. Texts arrive while that thread waits in a call that serves sent messages.
#pragma once

#include <optional>

#include "base/text.h"
#include "platform/WindowText.h"
#include "platform/win32/Handle.h"

namespace tb {

class ReplyWindow {
public:
    // Error 51 when there is no desktop to make windows on.
    ReplyWindow();
    ReplyWindow(const ReplyWindow&) = delete;
    ReplyWindow& operator=(const ReplyWindow&) = delete;

    WindowHandle Window() const;

    // The last text set since the last call, the empty one too; nothing when none was set.
    std::optional<Text> Take();

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

    std::optional<Text> m_Text;
    OwnedWindow m_Window;
};

}  // namespace tb
