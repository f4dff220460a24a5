// The menu of a tray icon, opened as the shell does it and used by the keyboard.
#pragma once

#include <windows.h>

#include <utility>
#include <vector>

#include "base/text.h"
#include "platform/TrayIcon.h"
#include "windows/Eventually.h"

namespace tb {

// Handles the messages that wait for this thread.
inline void Serve() {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

// The menu of a process that is open, null when there is none.
inline HWND OpenMenu(DWORD processId) { return FindWindowOf(processId, "#32768"); }

// Of a tray window of the calling thread.
class TrayMenu {
public:
    // Opens the menu, presses Escape or the letter of an item, and returns when it is closed. The rows that were shown:
    // the caption, with " bold" or " grey" behind it, or "-". Without rows the menu did not open.
    static std::vector<Text> Open(HWND tray, char letter = 0) {
        s_Tray = tray;
        s_Letter = letter;
        s_Rows.clear();
        s_Deadline = GetTickCount64() + DeadlineMs;
        const UINT_PTR poll = SetTimer(nullptr, 0, PollMs, &Poll);
        SendMessageA(tray, TrayIconMessage, TrayIconId, WM_RBUTTONDOWN);
        KillTimer(nullptr, poll);
        Serve();
        return std::exchange(s_Rows, {});
    }

private:
    static constexpr UINT GetMenuOfWindow = 0x1E1;  // MN_GETHMENU
    static constexpr UINT PollMs = 5;

    // Runs inside the menu's loop.
    static void CALLBACK Poll(HWND, UINT, UINT_PTR, DWORD) {
        const HWND open = OpenMenu(GetCurrentProcessId());
        if (open == nullptr && GetTickCount64() > s_Deadline) SendMessageA(s_Tray, WM_CANCELMODE, 0, 0);
        if (open == nullptr || !s_Rows.empty()) return;
        const HMENU menu = reinterpret_cast<HMENU>(SendMessageA(open, GetMenuOfWindow, 0, 0));
        for (int row = 0; row < GetMenuItemCount(menu); ++row) s_Rows.push_back(Row(menu, static_cast<UINT>(row)));
        PostMessageA(s_Tray, s_Letter == 0 ? WM_KEYDOWN : WM_CHAR, s_Letter == 0 ? VK_ESCAPE : s_Letter, 0);
    }
    static Text Row(HMENU menu, UINT position) {
        char caption[64] = "";
        MENUITEMINFOA item{};
        item.cbSize = sizeof item;
        item.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_STRING;
        item.dwTypeData = caption;
        item.cch = sizeof caption;
        GetMenuItemInfoA(menu, position, TRUE, &item);
        if ((item.fType & MFT_SEPARATOR) != 0) return "-";
        return Text(caption) + ((item.fState & MFS_DEFAULT) != 0 ? " bold" : "") +
               ((item.fState & MFS_DISABLED) != 0 ? " grey" : "");
    }

    inline static HWND s_Tray = nullptr;
    inline static char s_Letter = 0;
    inline static std::vector<Text> s_Rows;
    inline static ULONGLONG s_Deadline = 0;
};

}  // namespace tb
