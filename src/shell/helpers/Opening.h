// Opening things with the system's own programs.
#pragma once

#include "base/log.h"
#include "shell/helpers/App.h"

namespace tb {

// Places of the help file that windows lead to, by number; the deployment's help.hhp maps each to a page.
namespace HelpTopic {
inline constexpr std::int32_t None = 0;
inline constexpr std::int32_t Qualifiers = 2000;
}  // namespace HelpTopic

// Opens a help file beside the program, the program's own if none is named, at a topic, without one at its first page.
// A viewer that does not start is one line of level 0 on `log`. What the viewer finds is not known here.
void StartHelp(const App& app, LogSink& log, std::int32_t topic = HelpTopic::None, const Text& file = {}) noexcept;

// A file or an address, as the user's shell would. False when the shell refuses.
bool ShellOpen(const App& app, const Text& target);

}  // namespace tb
