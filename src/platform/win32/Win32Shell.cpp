#include "platform/win32/Win32Shell.h"

#include <windows.h>

// After windows.h.
#include <shellapi.h>

#include "platform/win32/Win32Text.h"

namespace tb {

bool Win32Shell::Open(const Text& target) {
    // The result is no handle but a number; up to this one it is an error's.
    constexpr INT_PTR LastError = 32;
    const HINSTANCE result = ShellExecuteW(nullptr, L"open", ToSystem(target).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(result) > LastError;
}

}  // namespace tb
