// What the windows of all dialogs have in common.
#pragma once

#include "ui/skin/tbSkin.h"

namespace tb {

// The window that a dialog comes from: the one that was loaded last of those that the user sees and finds in the task
// list; null when there is none. The dialog is to be owned by it, or it could come to lie behind.
Form* WindowBehind(const Form& dialog);

// The colour of its ground: the skin's "FormBackColor"; without one the program's own colour or, in high contrast, the
// system's.
Color GroundColor(const Form& dialog, const tbSkin& skin, const App& app);

}  // namespace tb
