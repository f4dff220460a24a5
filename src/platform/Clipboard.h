// The clipboard of the user's session.
#pragma once

#include "platform/WindowText.h"

namespace tb {

class Clipboard {
public:
    virtual ~Clipboard() = default;
    // Puts a text there, up to its first NUL, instead of what is there. `owner` is a window of this program. False when
    // another program holds the clipboard open, or the system refuses.
    virtual bool SetText(WindowHandle owner, const Text& text) = 0;
};

}  // namespace tb
