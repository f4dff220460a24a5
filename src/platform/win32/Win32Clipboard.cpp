#include "platform/win32/Win32Clipboard.h"

#include <windows.h>

#include <cstring>

#include "platform/win32/Handle.h"
#include "platform/win32/Win32Text.h"
#include "platform/win32/Win32WindowText.h"

namespace tb {

bool Win32Clipboard::SetText(WindowHandle owner, const Text& text) {
    const std::wstring wide = ToSystem(text);
    const size_t size = (wide.size() + 1) * sizeof(wchar_t);
    OwnedGlobal block(GlobalAlloc(GMEM_MOVEABLE, size));
    void* const place = block ? GlobalLock(block.Get()) : nullptr;
    if (place == nullptr) return false;
    std::memcpy(place, wide.c_str(), size);
    GlobalUnlock(block.Get());
    if (!OpenClipboard(ToHwnd(owner))) return false;
    EmptyClipboard();
    // What is there belongs to the system.
    const bool taken = SetClipboardData(CF_UNICODETEXT, block.Get()) != nullptr;
    if (taken) static_cast<void>(block.Release());
    CloseClipboard();
    return taken;
}

}  // namespace tb
