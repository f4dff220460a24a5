// Message boxes of the system, and the sound of any message.
#pragma once

#include <cstdint>

#include "base/text.h"

namespace tb {

// What a message asks for: buttons and an icon, added up, as the system numbers them.
namespace MessageButtons {
inline constexpr std::int32_t Plain = 0;
inline constexpr std::int32_t OKCancel = 1;
inline constexpr std::int32_t AbortRetryIgnore = 2;
inline constexpr std::int32_t YesNoCancel = 3;
inline constexpr std::int32_t YesNo = 4;
inline constexpr std::int32_t RetryCancel = 5;
inline constexpr std::int32_t Critical = 16;
inline constexpr std::int32_t Question = 32;
inline constexpr std::int32_t Exclamation = 48;
inline constexpr std::int32_t Information = 64;
// The button that Enter presses: the second, third or fourth; the first without any.
inline constexpr std::int32_t Default2 = 0x100;
inline constexpr std::int32_t Default3 = 0x200;
inline constexpr std::int32_t Default4 = 0x300;
// One more button, which opens the help and leaves the message open.
inline constexpr std::int32_t Help = 0x4000;
// Above all other windows.
inline constexpr std::int32_t TopMost = 0x10000;
}  // namespace MessageButtons

// The button that was pressed.
inline constexpr std::int32_t AnswerOK = 1;
inline constexpr std::int32_t AnswerCancel = 2;
inline constexpr std::int32_t AnswerAbort = 3;
inline constexpr std::int32_t AnswerRetry = 4;
inline constexpr std::int32_t AnswerIgnore = 5;
inline constexpr std::int32_t AnswerYes = 6;
inline constexpr std::int32_t AnswerNo = 7;

class Dialogs {
public:
    virtual ~Dialogs() = default;
    // Shows a modal message and waits for the user while messages are served. `buttons` are of MessageButtons; the
    // result is the button pressed.
    virtual std::int32_t ShowMessage(const Text& prompt, std::int32_t buttons, const Text& title) = 0;
    // The sound that the user has chosen for messages with that icon (of MessageButtons, 0 for none). Does not wait.
    virtual void SoundMessage(std::int32_t icon) = 0;
};

}  // namespace tb
