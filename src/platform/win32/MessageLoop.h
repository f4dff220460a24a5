// The main loop of a program with windows.
#pragma once

namespace tb {

// Serves messages of the calling thread until EndMessageLoop; returns its status.
int RunMessageLoop();

// Ends the loop of the calling thread, and the modal boxes open above it, once the present message is handled.
void EndMessageLoop(int status);

}  // namespace tb
