// Waiting for what another process or thread does.
#pragma once

#include <windows.h>

#include <stdexcept>

#include "base/text.h"

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

// The menu of a process that is open, null when there is none.
inline HWND OpenMenu(DWORD processId) { return FindWindowOf(processId, "#32768"); }

// Presses a button in the message box of a process with that title, as soon as there is one whose text has `part` in
// it; the text. Throws when none comes.
inline Text AnswerBox(DWORD processId, const char* title, TextView part, int button) {
    HWND box = nullptr;
    char text[1024] = "";
    const bool found = Eventually([&] {
        box = FindWindowOf(processId, "#32770", title);
        GetDlgItemTextA(box, 0xFFFF, text, sizeof text);
        return box != nullptr && TextView(text).find(part) != TextView::npos;
    });
    if (!found) throw std::runtime_error("no message box " + Text(part));
    PostMessageA(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
    return text;
}

}  // namespace tb
