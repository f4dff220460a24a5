#include "ui/window/win32/pcMemDC.h"

#include <utility>

#include "ui/window/win32/Win32Drawing.h"

namespace tb {

namespace {

OwnedDc ScreenDC() { return OwnedDc(CreateDCA("DISPLAY", nullptr, nullptr, nullptr)); }

OwnedBitmap MakePixels(std::int32_t width, std::int32_t height, std::uint32_t*& pixels) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    // From the top.
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    if (width <= 0 || height <= 0) return {};
    OwnedBitmap bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    pixels = static_cast<std::uint32_t*>(bits);
    return bitmap;
}

}  // namespace

MemoryDC::MemoryDC(HDC screen, OwnedBitmap bitmap, std::int32_t width, std::int32_t height) {
    if (!bitmap) return;
    m_Dc = OwnedDc(CreateCompatibleDC(screen));
    if (!m_Dc) return;
    m_OldBitmap = SelectObject(m_Dc.Get(), bitmap.Get());
    m_Bitmap = std::move(bitmap);
    m_Width = width;
    m_Height = height;
}

MemoryDC::~MemoryDC() { TakeBitmap(); }

OwnedBitmap MemoryDC::TakeBitmap() {
    if (m_Dc) SelectObject(m_Dc.Get(), m_OldBitmap);
    m_Dc.Close();
    m_Width = 0;
    m_Height = 0;
    return std::move(m_Bitmap);
}

void MemoryDC::Swap(MemoryDC& other) noexcept {
    std::swap(m_Dc, other.m_Dc);
    std::swap(m_Bitmap, other.m_Bitmap);
    std::swap(m_OldBitmap, other.m_OldBitmap);
    std::swap(m_Width, other.m_Width);
    std::swap(m_Height, other.m_Height);
}

pcMemDC::pcMemDC(std::int32_t width, std::int32_t height) : pcMemDC(ScreenDC(), width, height) {}

pcMemDC::pcMemDC(const OwnedDc& screen, std::int32_t width, std::int32_t height)
    : MemoryDC(
          screen.Get(),
          width > 0 && height > 0 ? OwnedBitmap(CreateCompatibleBitmap(screen.Get(), width, height)) : OwnedBitmap(),
          width, height) {}

pcMemDC pcMemDC::CreateFromPicture(const Picture& picture) {
    const auto [width, height] = picture.Size;
    pcMemDC surface(width, height);
    DrawPicture(surface.hDC(), picture, {0, 0, width, height});
    return surface;
}

bool pcMemDC::Draw(HDC target, std::int32_t sourceLeft, std::int32_t sourceTop, std::int32_t width, std::int32_t height,
                   std::int32_t targetLeft, std::int32_t targetTop) const {
    return BitBlt(target, targetLeft, targetTop, width < 1 ? Width() : width, height < 1 ? Height() : height, hDC(),
                  sourceLeft, sourceTop, SRCCOPY) != FALSE;
}

Buffered::Buffered(HDC target, const RECT& area)
    : m_Target(target),
      m_Left(static_cast<int>(area.left)),
      m_Top(static_cast<int>(area.top)),
      m_Drawn(static_cast<int>(area.right - area.left), static_cast<int>(area.bottom - area.top)) {
    SetViewportOrgEx(Context(), -m_Left, -m_Top, nullptr);
}

Buffered::~Buffered() { m_Drawn.Draw(m_Target, m_Left, m_Top, 0, 0, m_Left, m_Top); }

PixelDC::PixelDC(std::int32_t width, std::int32_t height) : PixelDC(width, height, nullptr) {}

PixelDC::PixelDC(std::int32_t width, std::int32_t height, std::uint32_t* pixels)
    : MemoryDC(nullptr, MakePixels(width, height, pixels), width, height), m_Pixels(Width() > 0 ? pixels : nullptr) {}

}  // namespace tb
