// Where the parts of a message box stand and how large it is, without its window. All in twips.
#pragma once

#include <functional>
#include <vector>

#include "base/text.h"
#include "ui/window/Twips.h"

namespace tb {

// The size of a text in the label's font, broken into lines where it is wider than the width; 0 breaks at its line ends
// only.
using TextMeasure = std::function<TwipSize(const Text& text, Twips width)>;

// The box as it was designed and dressed, before there is a message.
struct MessageDesign {
    // The room inside the frame.
    TwipSize Inner;
    // What the frame takes of the window: nothing where the skin is the frame.
    TwipSize Frame;
    TwipRect Icon;
    TwipRect Label;
    // The area of the buttons, at the bottom; as far from the one side as from the other.
    TwipRect Buttons;
    TwipSize Button;
};

struct MessageSurroundings {
    // The system's border and the frame of its dialogs, once each.
    Twips FrameX = 0;
    Twips Pixel = 15;
    // No window is higher.
    Twips Highest = 11520;
};

struct MessageLayout {
    // With its frame.
    TwipSize Window;
    Twips SkinWidth = 0;
    TwipRect Label;
    TwipRect Buttons;
    // In the area of the buttons.
    std::vector<TwipRect> Row;
    // The prompt as the label shows it: what has no room in the highest window is left out, which "..." tells.
    Text Prompt;
};

MessageLayout LayOutMessage(const MessageDesign& design, const MessageSurroundings& around, const Text& prompt,
                            bool hasIcon, size_t buttons, const TextMeasure& measure);

// In the middle of a screen, but not above or left of its corner.
TwipPoint InTheMiddle(const TwipRect& screen, const TwipSize& window);

}  // namespace tb
