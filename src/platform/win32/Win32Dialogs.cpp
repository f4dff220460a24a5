#include "platform/win32/Win32Dialogs.h"

#include <windows.h>

#include "platform/win32/Win32Text.h"

namespace tb {

std::int32_t Win32Dialogs::ShowMessage(const Text& prompt, std::int32_t buttons, const Text& title) {
    const UINT style = static_cast<UINT>(buttons) | MB_SETFOREGROUND;
    return MessageBoxW(nullptr, ToSystem(prompt).c_str(), ToSystem(title).c_str(), style);
}

void Win32Dialogs::SoundMessage(std::int32_t icon) { MessageBeep(static_cast<UINT>(icon)); }

}  // namespace tb
