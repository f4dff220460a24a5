// Message boxes.
#pragma once

#include <cstdint>

#include "base/text.h"

namespace tb {

// What a message asks for: buttons and an icon, added up, as the system numbers them.
namespace MessageButtons {
inline constexpr std::int32_t Plain = 0;
inline constexpr std::int32_t OKCancel = 1;
inline constexpr std::int32_t YesNo = 4;
inline constexpr std::int32_t Critical = 16;
inline constexpr std::int32_t Question = 32;
inline constexpr std::int32_t Exclamation = 48;
inline constexpr std::int32_t Information = 64;
}  // namespace MessageButtons

// The button that was pressed.
inline constexpr std::int32_t AnswerOK = 1;
inline constexpr std::int32_t AnswerYes = 6;
inline constexpr std::int32_t AnswerNo = 7;

class Dialogs {
public:
    virtual ~Dialogs() = default;
    // Shows a modal message and waits for the user while messages are served. `buttons` are of MessageButtons; the
    // result is the button pressed.
    virtual std::int32_t ShowMessage(const Text& prompt, std::int32_t buttons, const Text& title) = 0;
};

}  // namespace tb
