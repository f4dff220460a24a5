#include "ui/window/win32/Win32Windowless.h"

#include <algorithm>

#include "ui/window/win32/Win32Drawing.h"
#include "ui/window/win32/Win32WindowSystem.h"

namespace tb {

void Win32ImagePeer::SetBounds(const TwipRect& bounds) {
    Change([&] {
        m_Pixels = m_System.ToPixels(bounds);
        m_Shown = nullptr;
    });
}

void Win32ImagePeer::SetPicture(const PictureRef& picture, bool stretch) {
    Change([&] {
        m_Picture = picture;
        m_Stretch = stretch;
        m_Shown = nullptr;
    });
}

RECT Win32ImagePeer::Area() const {
    return m_Visible && m_Picture && !m_Picture->Pixels.empty() ? ToRect(m_Pixels) : RECT{};
}

void Win32ImagePeer::Paint(HDC context) const {
    const RECT area = ToRect(m_Pixels);
    if (!m_Shown) m_Shown = m_Stretch ? Stretched(m_Picture, {m_Pixels.Width, m_Pixels.Height}) : m_Picture;
    const int saved = SaveDC(context);
    IntersectClipRect(context, static_cast<int>(area.left), static_cast<int>(area.top), static_cast<int>(area.right),
                      static_cast<int>(area.bottom));
    const PixelSize size = m_Stretch ? PixelSize{m_Pixels.Width, m_Pixels.Height} : m_Picture->Size;
    DrawPicture(context, *m_Shown, {m_Pixels.Left, m_Pixels.Top, size.Width, size.Height});
    RestoreDC(context, saved);
}

void Win32LinePeer::SetEnds(const TwipPoint& from, const TwipPoint& to) {
    Change([&] {
        m_From = m_System.ToPixels(from);
        m_To = m_System.ToPixels(to);
    });
}

void Win32LinePeer::SetColor(Color color) {
    m_Color = color;
    m_Canvas->Touch(Area());
}

RECT Win32LinePeer::Area() const {
    if (!m_Visible) return {};
    return {std::min(m_From.X, m_To.X), std::min(m_From.Y, m_To.Y), std::max(m_From.X, m_To.X) + 1,
            std::max(m_From.Y, m_To.Y) + 1};
}

void Win32LinePeer::Paint(HDC context) const { DrawLine(context, m_From, m_To, m_Color); }

}  // namespace tb
