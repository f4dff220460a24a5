// Owners of menus, icons and drawing objects.
#pragma once

#include "platform/win32/Handle.h"

namespace tb {

// With the menus below it.
struct MenuTrait {
    using Value = HMENU;
    static Value None() { return nullptr; }
    static bool Close(Value value) { return DestroyMenu(value) != FALSE; }
};

// Icons that were made, not those shared with the system.
struct IconTrait {
    using Value = HICON;
    static Value None() { return nullptr; }
    static bool Close(Value value) { return DestroyIcon(value) != FALSE; }
};

struct FontTrait {
    using Value = HFONT;
    static Value None() { return nullptr; }
    static bool Close(Value value) { return DeleteObject(value) != FALSE; }
};

using OwnedMenu = Handle<MenuTrait>;
using OwnedIcon = Handle<IconTrait>;
using OwnedFont = Handle<FontTrait>;

}  // namespace tb
