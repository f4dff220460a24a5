#include "shell/helpers/WindowPosition.h"

#include <algorithm>

namespace tb {

namespace {

// `hidden` is the share of the window that may lie beyond the edge.
double Kept(double stored, double window, double screen, double hidden) {
    return stored < 0 ? std::max(stored, -hidden * window) : std::min(stored, screen - (1 - hidden) * window);
}

}  // namespace

WindowPosition KeptReachable(const WindowPosition& stored, const WindowExtent& window, const WindowExtent& screen) {
    return {Kept(stored.Top, window.Height, screen.Height, 0.7), Kept(stored.Left, window.Width, screen.Width, 0.8)};
}

}  // namespace tb
