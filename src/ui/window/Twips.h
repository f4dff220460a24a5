// Sizes and places of windows. The program counts in twips, of which an inch has 1440; the screen counts in pixels.
#pragma once

#include <cstdint>

namespace tb {

using Twips = std::int32_t;

struct TwipPoint {
    Twips X = 0;
    Twips Y = 0;
    bool operator==(const TwipPoint&) const = default;
};

struct TwipSize {
    Twips Width = 0;
    Twips Height = 0;
    bool operator==(const TwipSize&) const = default;
};

struct TwipRect {
    Twips Left = 0;
    Twips Top = 0;
    Twips Width = 0;
    Twips Height = 0;
    bool operator==(const TwipRect&) const = default;
};

// What a screen of that many dots an inch makes of twips: 15 of them are a pixel at 96.
class TwipScale {
public:
    explicit TwipScale(std::int32_t dotsPerInch = 96) : m_Dpi(dotsPerInch > 0 ? dotsPerInch : 96) {}

    // Rounded, halves to the even one. Error 6 when the result does not fit into 32 bits.
    std::int32_t ToPixels(Twips twips) const;
    Twips ToTwips(std::int32_t pixels) const;

private:
    std::int32_t m_Dpi;
};

}  // namespace tb
