// Waiting for what another process or thread does.
#pragma once

#include <windows.h>

namespace tb {

// The one deadline of these tests. It only matters where something is broken, for no machine is so slow; ctest waits
// longer, so that a test can tell what did not come.
constexpr DWORD DeadlineMs = 300000;

// Polls until `done`, for the deadline at most; whether it came.
template <typename Condition>
bool Eventually(Condition done) {
    const ULONGLONG deadline = GetTickCount64() + DeadlineMs;
    while (!done()) {
        if (GetTickCount64() > deadline) return false;
        Sleep(10);
    }
    return true;
}

// The visible window of a process, not of another that runs in the same session, with that class and, unless it is
// null, that title; null when there is none.
inline HWND FindWindowOf(DWORD processId, const char* className, const char* title = nullptr) {
    for (HWND window = nullptr; (window = FindWindowExA(nullptr, window, className, title)) != nullptr;) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == processId && IsWindowVisible(window)) return window;
    }
    return nullptr;
}

}  // namespace tb
