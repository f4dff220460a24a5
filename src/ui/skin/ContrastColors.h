// What stands in for the colours of a skin while the user wants high contrast.
#pragma once

#include <optional>

#include "base/text.h"
#include "ui/window/Color.h"

namespace tb {

// The system's colour for an attribute of the cascade; nothing for a name that is none of a colour.
std::optional<Color> ContrastColor(TextView name);

// The same for a property of a control: those whose names end in "Color".
std::optional<Color> ContrastColorOfProperty(TextView name);

}  // namespace tb
