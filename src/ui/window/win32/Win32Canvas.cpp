#include "ui/window/win32/Win32Canvas.h"

#include <algorithm>

#include "ui/window/win32/Win32Drawing.h"

namespace tb {

namespace {

// Pixels; 64 MB of them at most. What lies beyond has the colour of the ground.
constexpr std::int32_t LongestSide = 8192;
constexpr std::int32_t MostPixels = 16'000'000;

RECT Everything() { return {0, 0, LongestSide, LongestSide}; }

bool Holds(const RECT& outer, const RECT& inner) {
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

}  // namespace

Win32Canvas::Win32Canvas(const Win32WindowSystem& system) : m_System(system) {}

PixelSize Win32Canvas::Room() const {
    RECT client{};
    GetClientRect(m_Window, &client);
    const auto width = std::min(static_cast<std::int32_t>(client.right), LongestSide);
    return {width, std::min(static_cast<std::int32_t>(client.bottom), MostPixels / std::max(width, 1))};
}

Win32Surface& Win32Canvas::Drawing() {
    if (!m_Surface) {
        m_Surface = std::make_unique<Win32Surface>(m_System, [this](const RECT& area) { Touch(area); });
        m_Surface->SetGround(m_Back, m_Picture);
        m_Surface->SetSize(Room());
    }
    return *m_Surface;
}

tb::Surface& Win32Canvas::Surface() { return Drawing(); }

void Win32Canvas::SetBack(Color back) {
    if (back == m_Back) return;
    m_Back = back;
    if (m_Surface) m_Surface->SetGround(m_Back, m_Picture);
    Touch(Everything());
}

void Win32Canvas::SetPicture(const PictureRef& picture) {
    m_Picture = picture;
    if (m_Surface) m_Surface->SetGround(m_Back, m_Picture);
    Touch(Everything());
}

void Win32Canvas::OnSystemColors() {
    if (m_Surface && m_Back.IsSystem()) m_Surface->Clear();
    Touch(Everything());
}

void Win32Canvas::Sized() {
    // A minimised window has no room, and gets back what it had.
    if (m_Window == nullptr || IsIconic(m_Window)) return;
    if (m_Surface) m_Surface->SetSize(Room());
    Touch(Everything());
}

void Win32Canvas::Add(const Windowless& item) { m_Items.push_back(&item); }

void Win32Canvas::Remove(const Windowless& item) {
    m_Items.erase(std::remove(m_Items.begin(), m_Items.end(), &item), m_Items.end());
    Touch(item.Area());
}

void Win32Canvas::Restack(const Windowless& item, bool toBack) {
    const auto place = std::find(m_Items.begin(), m_Items.end(), &item);
    if (toBack) {
        std::rotate(place, place + 1, m_Items.end());
    } else {
        std::rotate(m_Items.begin(), place, place + 1);
    }
    Touch(item.Area());
}

void Win32Canvas::Touch(const RECT& area) {
    if (m_Window == nullptr || IsRectEmpty(&area)) return;
    UnionRect(&m_Stale, &m_Stale, &area);
    // Pixels are drawn one by one; each call of the system costs more than a pixel.
    if (Holds(m_Invalid, area) || !IsWindowVisible(m_Window)) return;
    UnionRect(&m_Invalid, &m_Invalid, &area);
    // Labels show it too.
    RedrawWindow(m_Window, &m_Invalid, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void Win32Canvas::Compose() {
    const auto [width, height] = Room();
    if (m_Composed.Width() != width || m_Composed.Height() != height) {
        m_Composed = pcMemDC(width, height);
        m_Stale = Everything();
    }
    const RECT all{0, 0, width, height};
    RECT stale{};
    if (!IntersectRect(&stale, &m_Stale, &all)) return;
    m_Stale = {};
    const HDC context = m_Composed.hDC();
    const int saved = SaveDC(context);
    IntersectClipRect(context, static_cast<int>(stale.left), static_cast<int>(stale.top), static_cast<int>(stale.right),
                      static_cast<int>(stale.bottom));
    FillArea(context, stale, m_Back);
    if (IsDrawn()) BitBlt(context, 0, 0, width, height, Drawing().Context(), 0, 0, SRCCOPY);
    std::for_each(m_Items.rbegin(), m_Items.rend(), [&](const Windowless* item) {
        const RECT area = item->Area();
        RECT common{};
        if (IntersectRect(&common, &area, &stale)) item->Paint(context);
    });
    RestoreDC(context, saved);
}

HDC Win32Canvas::Ground() {
    const bool hasItems = std::any_of(m_Items.begin(), m_Items.end(), [](const Windowless* item) {
        const RECT area = item->Area();
        return !IsRectEmpty(&area);
    });
    if (hasItems) {
        Compose();
        return m_Composed.hDC();
    }
    m_Composed = {};
    return IsDrawn() ? Drawing().Context() : nullptr;
}

void Win32Canvas::Paint(HDC context, const RECT& area, POINT offset) {
    m_Invalid = {};
    RECT target = area;
    OffsetRect(&target, static_cast<int>(-offset.x), static_cast<int>(-offset.y));
    const HDC ground = Ground();
    const PixelSize room = Room();
    const RECT drawn{0, 0, room.Width, room.Height};
    if (ground == nullptr || !Holds(drawn, area)) FillArea(context, target, m_Back);
    if (ground == nullptr) return;
    RECT common{};
    if (!IntersectRect(&common, &area, &drawn)) return;
    BitBlt(context, static_cast<int>(common.left - offset.x), static_cast<int>(common.top - offset.y),
           static_cast<int>(common.right - common.left), static_cast<int>(common.bottom - common.top), ground,
           static_cast<int>(common.left), static_cast<int>(common.top), SRCCOPY);
}

bool Win32Canvas::OnMessage(UINT message, WPARAM wParam) {
    if (message != WM_ERASEBKGND && message != WM_PRINTCLIENT) return false;
    RECT client{};
    GetClientRect(m_Window, &client);
    const auto context = reinterpret_cast<HDC>(wParam);
    RECT clip{};
    // Only what the system has asked for.
    if (GetClipBox(context, &clip) == ERROR || !IntersectRect(&clip, &clip, &client)) return true;
    Paint(context, clip);
    return true;
}

}  // namespace tb
