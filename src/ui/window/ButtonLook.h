// The colours in which a command button is drawn.
#pragma once

#include "ui/window/Color.h"

namespace tb {

struct ButtonState {
    bool Enabled = true;
    // The mouse is over it.
    bool Hot = false;
    bool Pressed = false;
    // Enter presses it.
    bool Default = false;
    bool Focused = false;
};

struct ButtonLook {
    Color Face;
    Color Border;
    Color Text;
};

// `colors` are those of the control, none of the system's: its ground stands around the button. The text has a contrast
// of 4.5 : 1 at least on each face where the two given have that, but for a disabled button, whose text has less.
ButtonLook LookOfButton(const ControlColors& colors, const ButtonState& state);

// How much two colours differ in light, from 1 to 21; neither is one of the system's.
double Contrast(Color one, Color other);
// The first colour with `percent` of the way gone to the second.
Color Mixed(Color from, Color to, std::int32_t percent);

}  // namespace tb
