// The message queue of the calling thread.
#pragma once

#include <windows.h>

#include <climits>
#include <functional>

namespace tb {

// The main loop of a program with windows: serves messages until EndMessageLoop and returns its status. Ends with 0
// when `done` says so, which is asked at first and after each message: a loop of the system's own (a menu, a window
// that is being moved) may have taken the end for itself.
int RunMessageLoop(const std::function<bool()>& done = {});

// Ends the loop of the calling thread, and the modal boxes open above it, once the present message is handled.
void EndMessageLoop(int status);

// Handles the messages that wait, `limit` of them at most besides what other threads send, and returns. False when the
// end of the loop is due; it stays so.
bool ServeWaitingMessages(int limit = INT_MAX);

// Waits for messages and handles them until `done`, which is asked at first and after each. False when the end of the
// loop is due; it stays so.
bool ServeMessagesUntil(const std::function<bool()>& done);

// What UseDialogKeys sends: a key is pressed (wParam is its number) in the window or in one that stands on it. Another
// answer than 0 takes it away from everybody else.
constexpr UINT KeyAsked = WM_APP;

// From now on each key that is pressed in this window, or in one that stands on it, is first sent to it as KeyAsked, in
// all loops above, and the keys of a dialog work there: Tab and the arrows move the focus, Enter
// and Escape come as commands IDOK and IDCANCEL, Alt and a letter press a button. The window must not be destroyed
// inside these commands before whoever handles them is done.
void UseDialogKeys(HWND window);

}  // namespace tb
