// What the flags of a message ask for (MessageButtons), and what is said of its buttons.
#pragma once

#include <cstdint>
#include <vector>

#include "base/text.h"

namespace tb {

struct MessageFlags {
    // The row of buttons, at most four. "&" stands before the letter that presses one.
    std::vector<Text> Captions;
    // By button: a click on it closes the box.
    std::vector<bool> Unload;
    // By button: what the box answers, 0 for one that does not close it.
    std::vector<std::int32_t> Answers;
    // 16, 32, 48 or 64, or 0 for none.
    std::int32_t Icon = 0;
    // From 1 on; always one of the row.
    std::int32_t Default = 1;
    bool TopMost = false;
};

// Flags that ask for no known row of buttons are those of "OK" alone.
MessageFlags ReadMessageFlags(std::int32_t flags);

inline constexpr const char* HelpCaption = "&Help";

// Without the mark of its mnemonic.
Text PlainCaption(const Text& caption);

// The button, from 1 on, that Esc and the frame of the box stand for: "Cancel"; without it the last one that closes the
// box; 0 when none does. A button without a flag closes it.
std::int32_t EscapeButton(const std::vector<Text>& captions, const std::vector<bool>& unload);

// What a box puts on the clipboard, as those of the system do: title, text and captions between lines.
Text MessageAsText(const Text& title, const Text& prompt, const std::vector<Text>& captions);

}  // namespace tb
