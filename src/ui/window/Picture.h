// Pictures of windows and controls: image files, and what they show.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "base/text.h"
#include "ui/window/Pixels.h"

namespace tb {

enum class PictureKind { None, Bmp, Gif, Jpeg, Icon };

// Nobody changes it once it is made.
struct Picture {
    // The image file; empty for what was drawn.
    Text Bytes;
    PictureKind Kind = PictureKind::None;
    // As it stands on the screen: at other than 96 dots an inch a picture has more or fewer pixels than its file.
    PixelSize Size;
    // 0xAARRGGBB, row by row from the top; a pixel with AA 0 is clear. Empty for what was not decoded.
    std::vector<std::uint32_t> Pixels;
};
using PictureRef = std::shared_ptr<const Picture>;  // null is "no picture"

struct PictureHeader {
    PictureKind Kind = PictureKind::None;
    PixelSize Size;
};

// What an image file says of itself in its first bytes; of an icon file the image that is nearest to 32 pixels. Nothing
// for other formats (a PNG among them), for a damaged header, and for more pixels than a window needs: 4096 either way
// and four million in all. The rest of the file may still be damaged.
std::optional<PictureHeader> ReadPictureHeader(TextView bytes);

// The picture in another size, bilinear; clear pixels do not bleed into the others. Null for null, for a picture
// without pixels and for an empty size.
PictureRef ScalePicture(const PictureRef& picture, PixelSize size);

}  // namespace tb
