// The program as a process of the system.
#pragma once

#include "base/log.h"
#include "shell/helpers/App.h"

namespace tb {

// The program does not run as its own executable.
bool IsDevelopmentRun(const App& app);

// The system's text for an error number of its own.
Text GetSystemErrorText(const App& app, std::uint32_t number);

// Trims the process's working set to the limits of the settings, on the NT family; both 0 switches it off. A refusal is
// one line of level 0 on `log`.
void FreeMemory(const App& app, LogSink& log);

}  // namespace tb
