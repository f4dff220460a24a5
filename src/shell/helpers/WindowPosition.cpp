#include "shell/helpers/WindowPosition.h"

#include <algorithm>

#include "base/numbers.h"
#include "shell/helpers/SettingValues.h"

namespace tb {

namespace {

// The system's numbers of its metrics.
constexpr std::int32_t CaptionHeight = 4;
constexpr std::int32_t DialogFrameWidth = 7;
constexpr std::int32_t FrameWidth = 32;
constexpr std::int32_t SmallCaptionHeight = 51;

// `hidden` is the share of the window that may lie beyond the edge.
double Kept(double stored, double window, double screen, double hidden) {
    return stored < 0 ? std::max(stored, -hidden * window) : std::min(stored, screen - (1 - hidden) * window);
}

}  // namespace

WindowPosition KeptReachable(const WindowPosition& stored, const WindowExtent& window, const WindowExtent& screen) {
    return {Kept(stored.Top, window.Height, screen.Height, 0.7), Kept(stored.Left, window.Width, screen.Width, 0.8)};
}

WindowPosition RestoreWindowPosition(const App& app, TextView section, const WindowExtent& window,
                                     std::optional<double> defaultTop, std::optional<double> defaultLeft) {
    const Machine::ScreenState state = app.System.Machine.Screen();
    const WindowExtent screen{static_cast<double>(state.Width) * state.TwipsPerPixel,
                              static_cast<double>(state.Height) * state.TwipsPerPixel};
    const auto stored = [&](TextView key, double fallback) {
        const Text text = GetSetting(app, section, key, "");
        return text.empty() ? fallback : ToDouble(text);
    };
    const WindowPosition position{stored("LastTop", defaultTop.value_or((screen.Height - window.Height) / 2)),
                                  stored("LastLeft", defaultLeft.value_or((screen.Width - window.Width) / 2))};
    return KeptReachable(position, window, screen);
}

FormBorderMetrics GetFormBorderMetrics(const App& app, std::int32_t borderStyle) {
    Machine& machine = app.System.Machine;
    const auto metrics = [&](std::int32_t width, std::int32_t height) {
        const std::int32_t twips = machine.Screen().TwipsPerPixel;
        return FormBorderMetrics{machine.Metric(width) * twips, machine.Metric(height) * twips};
    };
    switch (borderStyle) {
    case 1:
    case 3: return metrics(DialogFrameWidth, CaptionHeight);
    case 2: return metrics(FrameWidth, CaptionHeight);
    case 4: return metrics(DialogFrameWidth, SmallCaptionHeight);
    case 5: return metrics(FrameWidth, SmallCaptionHeight);
    default: return {};
    }
}

}  // namespace tb
