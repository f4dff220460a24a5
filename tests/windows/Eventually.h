// Waiting for what another process or thread does.
#pragma once

#include <windows.h>

#include <stdexcept>
#include <utility>
#include <vector>

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

// Captions of windows of that class inside `window`, with the windows, in the system's order.
inline std::vector<std::pair<HWND, Text>> PartsOf(HWND window, const char* className) {
    struct Search {
        const char* Class;
        std::vector<std::pair<HWND, Text>> Found;
    } search{className, {}};
    const auto collect = [](HWND part, LPARAM to) -> BOOL {
        auto& parts = *reinterpret_cast<Search*>(to);
        char name[32] = "";
        GetClassNameA(part, name, sizeof name);
        // As of another process, whose windows answer only messages for their texts.
        Text text(static_cast<size_t>(SendMessageA(part, WM_GETTEXTLENGTH, 0, 0)) + 1, '\0');
        text.resize(
            static_cast<size_t>(SendMessageA(part, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
        if (lstrcmpiA(name, parts.Class) == 0) parts.Found.emplace_back(part, text);
        return TRUE;
    };
    EnumChildWindows(window, collect, reinterpret_cast<LPARAM>(&search));
    return search.Found;
}

// A box that asks or tells, whether it is the system's or the program's own: the visible window of a process with that
// title that shows a button of that caption, its mnemonic aside. The button; null when there is none.
inline HWND FindBoxButton(DWORD processId, const char* title, TextView caption) {
    for (HWND window = nullptr; (window = FindWindowExA(nullptr, window, nullptr, title)) != nullptr;) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner != processId || !IsWindowVisible(window)) continue;
        for (const auto& [button, text] : PartsOf(window, "BUTTON")) {
            if (IsWindowVisible(button) && RemoveAll(text, "&") == caption) return button;
        }
    }
    return nullptr;
}

// Presses the button of that caption in the box of a process with that title, as soon as there is one whose text has
// `part` in it; the text. Throws when none comes.
inline Text AnswerBox(DWORD processId, const char* title, TextView part, const char* caption) {
    HWND button = nullptr;
    Text told;
    const bool found = Eventually([&] {
        button = FindBoxButton(processId, title, caption);
        told.clear();
        if (button == nullptr) return false;
        for (const auto& [label, text] : PartsOf(GetAncestor(button, GA_ROOT), "STATIC")) told += text;
        return told.find(part) != Text::npos;
    });
    if (!found) throw std::runtime_error("no message box " + Text(part));
    PostMessageA(button, BM_CLICK, 0, 0);
    return told;
}

}  // namespace tb
