#include "shell/helpers/Opening.h"

#include "base/errors.h"

namespace tb {

void StartHelp(const App& app, LogSink& log, std::int32_t topic, const Text& file) noexcept {
    Trap(
        [&] {
            const Text place = topic == HelpTopic::None ? Text() : "-mapid " + std::to_string(topic) + " ";
            const Text line = "hh.exe " + place + app.AppPath() + "\\" + (file.empty() ? app.HelpFile : file);
            if (app.System.Processes.Start(line) == 0) throw Error(ErrorNumber::FileNotFound);
        },
        [&](const RuntimeError& error) { log.WriteLog("Error starting help: " + error.Line(), LogLevel::Always); });
}

bool ShellOpen(const App& app, const Text& target) { return app.System.Shell.Open(target); }

}  // namespace tb
