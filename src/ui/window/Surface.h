// What a form or a box is drawn on. It keeps what is drawn: the window shows it whenever it is uncovered. All in
// pixels.
#pragma once

#include "ui/window/Color.h"
#include "ui/window/Font.h"
#include "ui/window/Picture.h"

namespace tb {

class Surface {
public:
    // What GetPixel answers outside.
    static constexpr Color Outside{-1};

    virtual ~Surface() = default;

    virtual PixelSize Size() const = 0;
    // Takes away what was drawn; the ground's colour and picture stay.
    virtual void Clear() = 0;
    virtual void Fill(const PixelRect& area, Color color) = 0;
    // One pixel wide; the last pixel is left out.
    virtual void Line(PixelPoint from, PixelPoint to, Color color) = 0;
    // The outline of a rectangle whose right and bottom edges are left out, one pixel wide, with corners of an ellipse
    // that is `corner` wide and high. What is inside stays.
    virtual void RoundRect(PixelPoint from, PixelPoint to, std::int32_t corner, Color color) = 0;
    // One line, its upper left corner at `at`, on what is there.
    virtual void Print(PixelPoint at, const Text& text, const Font& font, Color color) = 0;
    virtual Color GetPixel(PixelPoint at) const = 0;
    // Does nothing outside.
    virtual void SetPixel(PixelPoint at, Color color) = 0;
    // Stretched to the area; clear pixels leave what is there.
    virtual void DrawPicture(const Picture& picture, const PixelRect& area) = 0;
    // The part of another surface that begins at `from`, without what windows on it show.
    virtual void CopyFrom(const Surface& source, PixelPoint from, const PixelRect& to) = 0;
    // What it shows now.
    virtual PictureRef Image() const = 0;
};

}  // namespace tb
