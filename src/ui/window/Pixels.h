// Places on a screen or a drawing surface, in its pixels, from its upper left corner.
#pragma once

#include <cstdint>

namespace tb {

struct PixelSize {
    std::int32_t Width = 0;
    std::int32_t Height = 0;
    bool operator==(const PixelSize&) const = default;
};

struct PixelPoint {
    std::int32_t X = 0;
    std::int32_t Y = 0;
    bool operator==(const PixelPoint&) const = default;
};

struct PixelRect {
    std::int32_t Left = 0;
    std::int32_t Top = 0;
    std::int32_t Width = 0;
    std::int32_t Height = 0;
    bool operator==(const PixelRect&) const = default;
};

}  // namespace tb
