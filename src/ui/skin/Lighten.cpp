#include "ui/skin/Lighten.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tb {

namespace {

constexpr std::uint32_t White = 0xFFFFFF;
constexpr std::uint32_t Opacity = 0xFF000000;

using Channels = std::array<std::uint32_t, 256>;

Channels ChannelsOf(std::int32_t factor) {
    Channels changed{};
    for (size_t value = 0; value < changed.size(); ++value) {
        const double exact = static_cast<double>(value) * (100.0 + factor) / 100.0;
        changed[value] = static_cast<std::uint32_t>(std::nearbyint(std::clamp(exact, 0.0, 255.0)));
    }
    return changed;
}

// The order of red and blue does not matter.
std::uint32_t Adjusted(std::uint32_t color, const Channels& channels) {
    if (color == White) return White;
    return channels[color & 0xFFU] | channels[color >> 8 & 0xFFU] << 8 | channels[color >> 16 & 0xFFU] << 16;
}

}  // namespace

Color AdjustColor(Color color, std::int32_t factor) {
    if (color.IsSystem()) return color;
    const auto bits = static_cast<std::uint32_t>(color.Bits()) & White;
    return static_cast<std::int32_t>(Adjusted(bits, ChannelsOf(factor)));
}

PictureRef AdjustPicture(const PictureRef& picture, std::int32_t factor) {
    if (picture == nullptr) return nullptr;
    const Channels channels = ChannelsOf(factor);
    auto adjusted = std::make_shared<Picture>();
    adjusted->Size = picture->Size;
    adjusted->Pixels.reserve(picture->Pixels.size());
    for (const std::uint32_t pixel : picture->Pixels) {
        adjusted->Pixels.push_back((pixel & Opacity) | Adjusted(pixel & White, channels));
    }
    return adjusted;
}

}  // namespace tb
