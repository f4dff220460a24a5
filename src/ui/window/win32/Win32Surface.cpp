#include "ui/window/win32/Win32Surface.h"

#include <algorithm>

#include "platform/win32/Win32Text.h"
#include "ui/window/win32/Win32Drawing.h"
#include "ui/window/win32/Win32WindowSystem.h"

namespace tb {

namespace {

// Beyond all screens; farther away the system's own sums overflow.
constexpr std::int32_t Farthest = 1 << 20;

std::int32_t Near(std::int32_t place) { return std::clamp(place, -Farthest, Farthest); }
PixelPoint Near(PixelPoint at) { return {Near(at.X), Near(at.Y)}; }
PixelRect Near(const PixelRect& area) { return {Near(area.Left), Near(area.Top), Near(area.Width), Near(area.Height)}; }

}  // namespace

void Win32Surface::SetGround(Color back, const PictureRef& picture) {
    if (back == m_Back && picture == m_Picture) return;
    m_Back = back;
    m_Picture = picture;
    Clear();
}

void Win32Surface::DrawGround(const pcMemDC& memory) const {
    FillArea(memory.hDC(), {0, 0, memory.Width(), memory.Height()}, m_Back);
    if (m_Picture) tb::DrawPicture(memory.hDC(), *m_Picture, {0, 0, m_Picture->Size.Width, m_Picture->Size.Height});
}

void Win32Surface::SetSize(PixelSize size) {
    if (size == Size()) return;
    pcMemDC memory(size.Width, size.Height);
    DrawGround(memory);
    const std::int32_t width = std::min(m_Memory.Width(), memory.Width());
    const std::int32_t height = std::min(m_Memory.Height(), memory.Height());
    if (width > 0 && height > 0) m_Memory.Draw(memory.hDC(), 0, 0, width, height, 0, 0);
    m_Memory = std::move(memory);
}

void Win32Surface::Clear() {
    DrawGround(m_Memory);
    m_Changed({0, 0, m_Memory.Width(), m_Memory.Height()});
}

void Win32Surface::Fill(const PixelRect& area, Color color) {
    if (area.Width <= 0 || area.Height <= 0) return;
    const RECT filled = ToRect(Near(area));
    FillArea(Context(), filled, color);
    m_Changed(filled);
}

void Win32Surface::Line(PixelPoint from, PixelPoint to, Color color) {
    from = Near(from);
    to = Near(to);
    DrawLine(Context(), from, to, color);
    m_Changed({std::min(from.X, to.X), std::min(from.Y, to.Y), std::max(from.X, to.X) + 1, std::max(from.Y, to.Y) + 1});
}

void Win32Surface::RoundRect(PixelPoint from, PixelPoint to, std::int32_t corner, Color color) {
    from = Near(from);
    to = Near(to);
    const RECT outline{std::min(from.X, to.X), std::min(from.Y, to.Y), std::max(from.X, to.X), std::max(from.Y, to.Y)};
    DrawRoundRect(Context(), outline, Near(corner), color);
    m_Changed(outline);
}

void Win32Surface::Print(PixelPoint at, const Text& text, const Font& font, Color color) {
    at = Near(at);
    const std::wstring shown = ToSystem(text);
    const auto owner = m_System.FontOf(font);
    const Selected selected(Context(), owner->Get());
    SetBkMode(Context(), TRANSPARENT);
    SetTextColor(Context(), ToColorRef(color));
    TextOutW(Context(), at.X, at.Y, shown.c_str(), static_cast<int>(shown.size()));
    // Slanted letters reach beyond the line's measured end.
    m_Changed({0, at.Y, m_Memory.Width(), m_Memory.Height()});
}

Color Win32Surface::GetPixel(PixelPoint at) const {
    return IsInside(at) ? Color(static_cast<std::int32_t>(::GetPixel(Context(), at.X, at.Y))) : Outside;
}

void Win32Surface::SetPixel(PixelPoint at, Color color) {
    if (!IsInside(at)) return;
    SetPixelV(Context(), at.X, at.Y, ToColorRef(color));
    m_Changed({at.X, at.Y, at.X + 1, at.Y + 1});
}

void Win32Surface::DrawPicture(const Picture& picture, const PixelRect& area) {
    const PixelRect within = Near(area);
    tb::DrawPicture(Context(), picture, within);
    m_Changed(ToRect(within));
}

void Win32Surface::CopyFrom(const Surface& source, PixelPoint from, const PixelRect& to) {
    const auto* const other = dynamic_cast<const Win32Surface*>(&source);
    const PixelRect within = Near(to);
    if (other == nullptr || within.Width <= 0 || within.Height <= 0) return;
    const PixelPoint begin = Near(from);
    other->m_Memory.Draw(Context(), begin.X, begin.Y, within.Width, within.Height, within.Left, within.Top);
    m_Changed(ToRect(within));
}

PictureRef Win32Surface::Image() const {
    const auto [width, height] = Size();
    const PixelDC copy(width, height);
    auto image = std::make_shared<Picture>(Picture{{}, PictureKind::Bmp, {copy.Width(), copy.Height()}, {}});
    if (copy.Width() == 0) return image;
    m_Memory.Draw(copy.hDC(), 0, 0, 0, 0, 0, 0);
    const std::uint32_t* const pixels = copy.Pixels();
    image->Pixels.assign(pixels, pixels + static_cast<size_t>(width) * static_cast<size_t>(height));
    for (std::uint32_t& pixel : image->Pixels) pixel |= 0xFF000000U;
    return image;
}

}  // namespace tb
