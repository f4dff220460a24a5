#include "platform/win32/Win32Dialogs.h"

#include <windows.h>

namespace tb {

std::int32_t Win32Dialogs::ShowMessage(const Text& prompt, std::int32_t buttons, const Text& title) {
    const UINT style = static_cast<UINT>(buttons) | MB_SETFOREGROUND;
    return MessageBoxA(nullptr, prompt.c_str(), title.c_str(), style);
}

}  // namespace tb
