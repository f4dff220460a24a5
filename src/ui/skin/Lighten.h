// Lighter and darker colours.
#pragma once

#include "ui/window/Color.h"
#include "ui/window/Picture.h"

namespace tb {

// Each channel changed by that many percent, rounded with halves to the even one, within 0 and 255; a negative factor
// darkens. White stays, and so does a colour of the system, which has no channels.
Color AdjustColor(Color color, std::int32_t factor);

// All pixels of a picture so, clear ones as they are. Null for null.
PictureRef AdjustPicture(const PictureRef& picture, std::int32_t factor);

}  // namespace tb
