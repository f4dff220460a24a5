// Waiting for the program to serve, and ending it.
#pragma once

#include "base/text.h"

namespace tb {

// Returns as soon as a window of that caption has the channel's text box; raises NoChannel after `seconds`.
void WaitForChannel(const Text& caption, int seconds);

// Asks the program behind the channel to close and waits for its end, ten seconds at most. Its exit status. Raises
// NoChannel when it does not run, and a RuntimeError when it does not end.
int CloseProgram(const Text& caption);

}  // namespace tb
