#include "ui/window/win32/Win32Drawing.h"

#include <algorithm>

#include "ui/window/win32/pcMemDC.h"

namespace tb {

namespace {

// The largest picture that is smoothed when it is stretched; pixels.
constexpr std::int64_t LargestSmoothed = 4'000'000;

// The system takes colours that are multiplied by how much is seen of them.
std::uint32_t Multiplied(std::uint32_t pixel) {
    const std::uint32_t alpha = pixel >> 24;
    if (alpha == 0xFF) return pixel;
    const auto channel = [&](int shift) { return ((pixel >> shift & 0xFF) * alpha + 127) / 255 << shift; };
    return alpha << 24 | channel(16) | channel(8) | channel(0);
}

}  // namespace

void FillArea(HDC context, const RECT& area, Color color) {
    SetDCBrushColor(context, ToColorRef(color));
    FillRect(context, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void DrawRoundRect(HDC context, const RECT& area, int corner, Color color) {
    const Selected pen(context, GetStockObject(DC_PEN));
    const Selected hollow(context, GetStockObject(NULL_BRUSH));
    SetDCPenColor(context, ToColorRef(color));
    RoundRect(context, static_cast<int>(area.left), static_cast<int>(area.top), static_cast<int>(area.right),
              static_cast<int>(area.bottom), corner, corner);
}

void DrawLine(HDC context, PixelPoint from, PixelPoint to, Color color) {
    const Selected pen(context, GetStockObject(DC_PEN));
    SetDCPenColor(context, ToColorRef(color));
    MoveToEx(context, from.X, from.Y, nullptr);
    LineTo(context, to.X, to.Y);
}

PictureRef Stretched(const PictureRef& picture, PixelSize size) {
    if (std::int64_t{size.Width} * size.Height > LargestSmoothed) return picture;
    return ScalePicture(picture, size);
}

void DrawPicture(HDC context, const Picture& picture, const PixelRect& area) {
    if (picture.Pixels.empty() || area.Width <= 0 || area.Height <= 0) return;
    // Nobody keeps it beyond this call.
    const PictureRef given(PictureRef(), &picture);
    const PictureRef shown = Stretched(given, {area.Width, area.Height});
    const PixelDC source(shown->Size.Width, shown->Size.Height);
    std::uint32_t* const pixels = source.Pixels();
    if (pixels == nullptr) return;
    std::transform(shown->Pixels.begin(), shown->Pixels.end(), pixels, Multiplied);
    constexpr BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    AlphaBlend(context, area.Left, area.Top, area.Width, area.Height, source.hDC(), 0, 0, source.Width(),
               source.Height(), blend);
}

}  // namespace tb
