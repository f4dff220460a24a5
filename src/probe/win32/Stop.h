// Waiting for the program to serve, and ending it.
#pragma once

#include "base/text.h"

namespace tb {

// Returns as soon as a window of that caption has the channel's text box; raises NoChannel after `seconds`.
void WaitForChannel(const Text& caption, int seconds);

// Asks the window of that caption to close, which ends the servers of measurements but not the program, and waits for
// the end of its process, ten seconds at most. Its exit status. Raises NoChannel when there is no such window, and
// StillRunning.
int CloseServer(const Text& caption);

// What is raised when a step towards the end does not come.
struct StillRunning {
    Text Message;
};

// Leaves the program as a user does: the tray icon's menu, its last item, the answer to the question. With Yes it waits
// for the end of the process and returns its exit status; with No it returns 0 once the question is gone. Raises
// NoChannel when the program does not run, and StillRunning.
int ExitThroughTray(const Text& caption, bool answerYes);

}  // namespace tb
