// What the skin says of one window.
#pragma once

#include "shell/helpers/App.h"
#include "ui/skin/SkinCascade.h"
#include "ui/window/Forms.h"

namespace tb {

struct WindowSkin {
    // The window's element in the program's own skin; null when it has none, and the window is not skinned then.
    ElementPtr Builtin;
    // That of the skin which came with the defaults; null for none.
    ElementPtr Override;
    // Of both, with all that is above the children of the window's elements; empty without `Builtin`.
    SkinCascade Cascade;

    // The text of `Builtin` as the window's icon; null when it names none.
    PictureRef Icon(const Forms& forms) const;
};

// Windows are found by name without case. A window that has no tbSkin, as that of the notification area, takes its part
// of the skin from here.
WindowSkin ReadWindowSkin(const App& app, TextView name);

}  // namespace tb
