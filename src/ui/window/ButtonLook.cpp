#include "ui/window/ButtonLook.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tb {

namespace {

constexpr Color White{0xFFFFFF};
constexpr Color Black{0};
constexpr double Readable = 4.5;
// Percent of the text's colour in the border, and in the text of a disabled button.
constexpr std::int32_t PlainBorder = 30;
constexpr std::int32_t StrongBorder = 75;
constexpr std::int32_t DisabledText = 45;
constexpr std::int32_t DisabledBorder = 15;
constexpr std::int32_t HotFace = 8;
constexpr std::int32_t PressedFace = 16;

double Luminance(Color color) {
    const auto light = [](std::int32_t channel) {
        const double part = channel / 255.0;
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * light(color.Red()) + 0.7152 * light(color.Green()) + 0.0722 * light(color.Blue());
}

// A text that is as it was given where that can be read, else black or white.
Color ReadableOn(Color face, Color text) {
    if (Contrast(face, text) >= Readable) return text;
    return Contrast(face, Black) > Contrast(face, White) ? Black : White;
}

}  // namespace

double Contrast(Color one, Color other) {
    const auto [dark, light] = std::minmax({Luminance(one), Luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

Color Mixed(Color from, Color to, std::int32_t percent) {
    const auto mix = [&](std::int32_t first, std::int32_t second) { return first + (second - first) * percent / 100; };
    return Color::FromChannels(mix(from.Red(), to.Red()), mix(from.Green(), to.Green()), mix(from.Blue(), to.Blue()));
}

ButtonLook LookOfButton(const ControlColors& colors, const ButtonState& state) {
    // Away from the text: a button stands out from its ground, whether that is light or dark.
    const Color bright = Luminance(colors.Back) > Luminance(colors.Fore) ? White : Black;
    const Color face = Mixed(colors.Back, bright, 70);
    if (!state.Enabled) {
        return {colors.Back, Mixed(colors.Back, colors.Fore, DisabledBorder),
                Mixed(colors.Back, colors.Fore, DisabledText)};
    }
    const std::int32_t shade = state.Pressed ? PressedFace : state.Hot ? HotFace : 0;
    ButtonLook look;
    look.Face = Mixed(face, colors.Fore, shade);
    look.Text = ReadableOn(look.Face, colors.Fore);
    look.Border = Mixed(face, colors.Fore, state.Default || state.Focused ? StrongBorder : PlainBorder);
    return look;
}

}  // namespace tb
