// Message boxes.
#pragma once

#include <cstdint>

#include "base/text.h"

namespace tb {

class Dialogs {
public:
    virtual ~Dialogs() = default;
    // Shows a modal message and waits for the user while messages are served. `buttons` takes the system's usual values
    // (0 OK; 16 critical, 32 question, 48 exclamation, 64 information); the result is the button pressed (1 OK).
    virtual std::int32_t ShowMessage(const Text& prompt, std::int32_t buttons, const Text& title) = 0;
};

}  // namespace tb
