// Where a skinned window's outline, border lines and caption go.
#pragma once

#include <vector>

#include "ui/window/Pixels.h"
#include "ui/window/Twips.h"

namespace tb {

// A window and what is inside its frame.
struct FrameSizes {
    TwipSize Window;
    TwipSize Inner;
};

// In pixels of the window, as the system's region takes them: right and bottom are left out.
struct ShapeEdges {
    std::int32_t Left = 0;
    std::int32_t Top = 0;
    std::int32_t Right = 0;
    std::int32_t Bottom = 0;
    bool operator==(const ShapeEdges&) const = default;
};

// A line of the border, or a rounded rectangle with that corner.
struct BorderStroke {
    // Where the cascade has its colour.
    const char* ColorName;
    PixelPoint From;
    PixelPoint To;
    // -1 for a line.
    std::int32_t Corner = -1;
};

struct WindowShape {
    ShapeEdges Region;
    // Width and height of the ellipse at each corner.
    std::int32_t Radius = 0;
    // In the order of drawing, on the inner surface.
    std::vector<BorderStroke> Border;
};

// `radius` is cut at 0 and at what a window can bear.
WindowShape ShapeOf(const FrameSizes& sizes, std::int32_t radius, const TwipScale& scale);

}  // namespace tb
