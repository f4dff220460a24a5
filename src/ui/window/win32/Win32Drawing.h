// Drawing on a device context.
#pragma once

#include <windows.h>

#include <string>

#include "ui/window/Color.h"
#include "ui/window/Picture.h"

namespace tb {

// A colour as the system draws it.
inline COLORREF ToColorRef(Color color) {
    const auto bits = static_cast<std::uint32_t>(color.Bits());
    return color.IsSystem() ? GetSysColor(static_cast<int>(bits & 0xFFU)) : bits & 0x00FFFFFFU;
}

inline RECT ToRect(const PixelRect& area) {
    return {area.Left, area.Top, area.Left + area.Width, area.Top + area.Height};
}

void FillArea(HDC context, const RECT& area, Color color);
// The outline of a rectangle, one pixel wide, its right and bottom edges left out, with corners of an ellipse that is
// `corner` wide and high.
void DrawRoundRect(HDC context, const RECT& area, int corner, Color color);
// One pixel wide; the last pixel is left out.
void DrawLine(HDC context, PixelPoint from, PixelPoint to, Color color);
// The picture in that size; itself where it has the size, and where the size is more than a screen needs.
PictureRef Stretched(const PictureRef& picture, PixelSize size);
// Stretched to the area; clear pixels leave what is there, half clear ones let it shine through. A picture without
// pixels draws nothing.
void DrawPicture(HDC context, const Picture& picture, const PixelRect& area);

// How labels lay out their text: lines end at CR LF and where the area does, at blanks or inside longer words.
constexpr UINT LabelLayout = DT_WORDBREAK | DT_EDITCONTROL | DT_EXPANDTABS;

}  // namespace tb
