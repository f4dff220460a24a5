#include "ui/skin/WindowShape.h"

#include <algorithm>

namespace tb {

namespace {

// Rounder corners would cut into what stands in a window.
constexpr std::int32_t GreatestRadius = 100;

}  // namespace

WindowShape ShapeOf(const FrameSizes& sizes, std::int32_t radius, const TwipScale& scale) {
    const Twips side = (sizes.Window.Width - sizes.Inner.Width) / 2;
    const Twips top = sizes.Window.Height - sizes.Inner.Height - side;
    const std::int32_t borderX = scale.ToPixels(side);
    const std::int32_t borderTop = scale.ToPixels(top);
    const std::int32_t right = borderX + scale.ToPixels(sizes.Inner.Width + side);
    const std::int32_t bottom = borderTop + scale.ToPixels(sizes.Inner.Height + top);
    WindowShape shape;
    shape.Radius = std::clamp(radius, 0, GreatestRadius);
    shape.Region = {borderX, borderTop, right, bottom};
    shape.Border = {
        {"Border2", {borderX + 1, borderTop + 1}, {right - 2, bottom - 2}, std::max(shape.Radius - 1, 0)},
        {"CaptionTopColor2", {1, 1}, {right - 2, 1}},
        {"CaptionTopColor3", {2, 2}, {right - 3, 2}},
        {"Border1", {borderX, borderTop}, {right - 1, bottom - 1}, shape.Radius},
        {"CaptionTopColor1", {0, 0}, {right - 1, 0}},
    };
    return shape;
}

}  // namespace tb
