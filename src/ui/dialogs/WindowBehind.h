// Which window a dialog comes from.
#pragma once

#include "ui/window/Form.h"

namespace tb {

// The one that was loaded last of those that the user sees and finds in the task list; null when there is none. The
// dialog is to be owned by it, or it could come to lie behind.
Form* WindowBehind(const Form& dialog);

}  // namespace tb
