// Windows of other processes, written to without waiting for ever.
#pragma once

#include "platform/win32/Win32WindowText.h"

namespace tb {

class BoundedWindowText : public Win32WindowText {
public:
    // How long a SendText waits at most, for each. Error 5 for 0.
    explicit BoundedWindowText(std::uint32_t milliseconds);

    // Gives up after that time, and at once when the system counts the owner as hanging. The owner may still handle
    // the text later.
    void SendText(WindowHandle window, const Text& text) override;
    // Whether the owner has handled the last text.
    bool Delivered() const { return m_Delivered; }

private:
    const std::uint32_t m_Milliseconds;
    bool m_Delivered = false;
};

}  // namespace tb
