// Windows of this and other processes, seen from outside: found by class and caption, written to by text.
#pragma once

#include <cstdint>

#include "base/text.h"

namespace tb {

// A window, valid across processes. Its 32 significant bits are what travels as decimal text; 0 is no window.
using WindowHandle = std::int32_t;

class WindowText {
public:
    virtual ~WindowText() = default;
    // The first top-level window of that class and caption, or 0.
    virtual WindowHandle FindTopLevel(const Text& className, const Text& caption) = 0;
    // The first child of that class, or 0.
    virtual WindowHandle FindChild(WindowHandle parent, const Text& className) = 0;
    // Sets the window's text and returns when its owner has handled that. Text travels up to its first NUL. A window
    // that no longer exists is passed over in silence.
    virtual void SendText(WindowHandle window, const Text& text) = 0;
};

}  // namespace tb
