// The texts that a form shows when the mouse rests on one of its controls.
#pragma once

#include <windows.h>

#include <set>

#include "base/text.h"
#include "platform/win32/Handle.h"

namespace tb {

class Win32ToolTips {
public:
    // Shows `text`, broken into lines, over `child` of `form`; an empty one ends that. Nothing is shown when the system
    // refuses.
    void Set(HWND form, HWND child, const Text& text);
    // Before the child's window goes.
    void Remove(HWND child);

private:
    // Made with the first text.
    OwnedWindow m_Window;
    HWND m_Form = nullptr;
    std::set<HWND> m_Children;
};

}  // namespace tb
