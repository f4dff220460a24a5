// Where a window comes back to.
#pragma once

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

}  // namespace tb
