// Where a window comes back to, and what its frame takes.
#pragma once

#include "shell/helpers/App.h"

namespace tb {

// All in twips.
struct WindowPosition {
    double Top = 0;
    double Left = 0;
};

struct WindowExtent {
    double Width = 0;
    double Height = 0;
};

// A stored position moved so far that the window can be reached: at least 30 percent of its height and 20 percent of
// its width stay on the screen.
WindowPosition KeptReachable(const WindowPosition& stored, const WindowExtent& window, const WindowExtent& screen);

// Where a window of that size was left, "LastTop" and "LastLeft" of a section, so far on the screen that it can be
// reached; where nothing is stored the default, which is the middle of the screen if it is not given. All in twips.
// Raises 13 for a stored text that is no number.
WindowPosition RestoreWindowPosition(const App& app, TextView section, const WindowExtent& window,
                                     std::optional<double> defaultTop = {}, std::optional<double> defaultLeft = {});

struct FormBorderMetrics {
    std::int32_t Width = 0;
    std::int32_t CaptionHeight = 0;
};
// Border width and caption height of a window by its border style, in twips; zero for style 0.
FormBorderMetrics GetFormBorderMetrics(const App& app, std::int32_t borderStyle);

}  // namespace tb
