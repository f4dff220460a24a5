#include "ui/window/win32/Win32Fonts.h"

#include <algorithm>
#include <cmath>

#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

constexpr double PointsPerInch = 72;
constexpr double SmallestPoints = 1;
constexpr double LargestPoints = 400;
// So many are kept that nobody shows.
constexpr size_t MostKept = 64;

OwnedFont MakeFont(const Font& font, int dotsPerInch) {
    // What is no number is the smallest.
    const double points = font.Size > SmallestPoints ? std::min(font.Size, LargestPoints) : SmallestPoints;
    LOGFONTW wanted{};
    wanted.lfHeight = -static_cast<LONG>(std::lround(points * dotsPerInch / PointsPerInch));
    wanted.lfWeight = font.Bold ? FW_BOLD : FW_NORMAL;
    wanted.lfItalic = static_cast<BYTE>(font.Italic);
    wanted.lfUnderline = static_cast<BYTE>(font.Underline);
    wanted.lfCharSet = DEFAULT_CHARSET;
    ToSystem(font.Name.c_str()).copy(wanted.lfFaceName, LF_FACESIZE - 1);
    return OwnedFont(CreateFontIndirectW(&wanted));
}

}  // namespace

std::shared_ptr<const OwnedFont> Win32Fonts::Get(const Font& font) {
    const auto made = std::find_if(m_Made.begin(), m_Made.end(), [&](const auto& one) { return one.first == font; });
    if (made != m_Made.end()) return made->second;
    if (m_Made.size() >= MostKept) {
        m_Made.erase(
            std::remove_if(m_Made.begin(), m_Made.end(), [](const auto& one) { return one.second.use_count() == 1; }),
            m_Made.end());
    }
    return m_Made.emplace_back(font, std::make_shared<const OwnedFont>(MakeFont(font, m_Dpi))).second;
}

}  // namespace tb
