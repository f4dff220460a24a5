// The font of a control.
#pragma once

#include "base/text.h"

namespace tb {

struct Font {
    Text Name = "Tahoma";
    // In points, of which an inch has 72.
    double Size = 8;
    bool Bold = false;
    bool Italic = false;
    bool Underline = false;
    bool operator==(const Font&) const = default;
};

}  // namespace tb
