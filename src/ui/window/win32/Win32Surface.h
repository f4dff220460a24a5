// A drawing surface in memory, in front of a colour and a picture.
#pragma once

#include <functional>

#include "ui/window/Surface.h"
#include "ui/window/win32/pcMemDC.h"

namespace tb {

class Win32WindowSystem;

class Win32Surface : public Surface {
public:
    // `changed` gets each area that looks different from now on. `system` must outlive it.
    Win32Surface(const Win32WindowSystem& system, std::function<void(const RECT&)> changed)
        : m_System(system), m_Changed(std::move(changed)) {}

    // What it stands in front of. Another colour clears it, as another picture does.
    void SetGround(Color back, const PictureRef& picture);
    // What was drawn stays as far as there is room for it. Without memory the surface is empty.
    void SetSize(PixelSize size);
    HDC Context() const { return m_Memory.hDC(); }

    PixelSize Size() const override { return {m_Memory.Width(), m_Memory.Height()}; }
    void Clear() override;
    void Fill(const PixelRect& area, Color color) override;
    void Line(PixelPoint from, PixelPoint to, Color color) override;
    void RoundRect(PixelPoint from, PixelPoint to, std::int32_t corner, Color color) override;
    void Print(PixelPoint at, const Text& text, const Font& font, Color color) override;
    Color GetPixel(PixelPoint at) const override;
    void SetPixel(PixelPoint at, Color color) override;
    void DrawPicture(const Picture& picture, const PixelRect& area) override;
    void CopyFrom(const Surface& source, PixelPoint from, const PixelRect& to) override;
    PictureRef Image() const override;

private:
    bool IsInside(PixelPoint at) const {
        return at.X >= 0 && at.Y >= 0 && at.X < m_Memory.Width() && at.Y < m_Memory.Height();
    }
    void DrawGround(const pcMemDC& memory) const;

    const Win32WindowSystem& m_System;
    std::function<void(const RECT&)> m_Changed;
    pcMemDC m_Memory;
    Color m_Back;
    PictureRef m_Picture;
};

}  // namespace tb
