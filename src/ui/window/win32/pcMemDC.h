// Drawing surfaces off the screen.
#pragma once

#include <windows.h>

#include <cstdint>

#include "platform/win32/Handle.h"
#include "ui/window/Picture.h"

namespace tb {

// A memory device context with its bitmap. Move-only. Without a bitmap (an empty size, or a system that has no room for
// it) width and height are 0 and nothing can be drawn.
class MemoryDC {
public:
    MemoryDC() = default;
    MemoryDC(MemoryDC&& other) noexcept { Swap(other); }
    MemoryDC& operator=(MemoryDC&& other) noexcept {
        MemoryDC gone;
        gone.Swap(*this);
        Swap(other);
        return *this;
    }
    ~MemoryDC();

    std::int32_t Width() const { return m_Width; }
    std::int32_t Height() const { return m_Height; }
    HDC hDC() const { return m_Dc.Get(); }
    // Ends the surface and leaves its pixels.
    OwnedBitmap TakeBitmap();

protected:
    // Makes them from a context that knows the screen, and a bitmap that may be none.
    MemoryDC(HDC screen, OwnedBitmap bitmap, std::int32_t width, std::int32_t height);

private:
    void Swap(MemoryDC& other) noexcept;

    OwnedDc m_Dc;
    OwnedBitmap m_Bitmap;
    HGDIOBJ m_OldBitmap = nullptr;
    std::int32_t m_Width = 0;
    std::int32_t m_Height = 0;
};

// A surface in the screen's own format.
class pcMemDC : public MemoryDC {
public:
    pcMemDC() = default;
    // Black. Pixels.
    pcMemDC(std::int32_t width, std::int32_t height);
    // As large as the picture, which is drawn on black.
    static pcMemDC CreateFromPicture(const Picture& picture);

    // Copies a part to another context; a width or height below 1 is that of the whole surface. False when the system
    // refuses.
    bool Draw(HDC target, std::int32_t sourceLeft, std::int32_t sourceTop, std::int32_t width, std::int32_t height,
              std::int32_t targetLeft, std::int32_t targetTop) const;

private:
    pcMemDC(const OwnedDc& screen, std::int32_t width, std::int32_t height);
};

// A surface whose pixels are at hand: 0xAARRGGBB, row by row from the top.
class PixelDC : public MemoryDC {
public:
    // All pixels 0.
    PixelDC(std::int32_t width, std::int32_t height);

    // Width times Height of them; null when there are none. What was drawn before is there.
    std::uint32_t* Pixels() const {
        GdiFlush();
        return m_Pixels;
    }

private:
    // Makes the bitmap; its pixels lie at `pixels`.
    PixelDC(std::int32_t width, std::int32_t height, std::uint32_t* pixels);

    std::uint32_t* m_Pixels = nullptr;
};

// What is drawn on its context is seen on `target` when it goes, all at once; both count places alike. Draws nothing
// when there is no memory for the area.
class Buffered {
public:
    Buffered(HDC target, const RECT& area);
    Buffered(const Buffered&) = delete;
    Buffered& operator=(const Buffered&) = delete;
    ~Buffered();

    HDC Context() const { return m_Drawn.hDC(); }

private:
    HDC m_Target;
    int m_Left;
    int m_Top;
    pcMemDC m_Drawn;
};

// Selects an object into a context for the length of a scope.
class Selected {
public:
    Selected(HDC context, HGDIOBJ object) : m_Context(context), m_Before(SelectObject(context, object)) {}
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;
    ~Selected() { SelectObject(m_Context, m_Before); }

private:
    HDC m_Context;
    HGDIOBJ m_Before;
};

}  // namespace tb
