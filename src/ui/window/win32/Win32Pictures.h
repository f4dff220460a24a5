// Image files as pictures.
#pragma once

#include "ui/window/Picture.h"

namespace tb {

// What a BMP, GIF, JPEG or icon file shows, at a screen of that many dots an inch; of an icon the image that is nearest
// to 32 pixels, of a film its first one. Null when it cannot be decoded. Does not throw.
PictureRef DecodePicture(const Text& bytes, int dotsPerInch) noexcept;

}  // namespace tb
