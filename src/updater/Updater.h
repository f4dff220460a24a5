// The course of the updater: waits until the program has left, installs, tells the user, starts the program again.
#pragma once

#include "base/log.h"
#include "platform/Files.h"
#include "platform/Processes.h"
#include "platform/Pump.h"
#include "updater/UpdateInstaller.h"
#include "updater/UpdaterCommand.h"

namespace tb {

// The updater's one window.
class UpdaterScreen {
public:
    virtual ~UpdaterScreen() = default;
    virtual void Say(const Text& message) = 0;
    virtual void Progress(int percent) = 0;
    // Returns when the user has read it, or after a minute: nobody may be there.
    virtual void Tell(const Text& message) = 0;
    // The program does not start while the window is there.
    virtual void Close() = 0;
    // The same as Tell, once the window is gone.
    virtual void TellClosed(const Text& message) = 0;
};

class Updater {
public:
    struct Parts {
        tb::Files& Files;
        tb::Processes& Processes;
        tb::Pump& Pump;
        UpdaterScreen& Screen;
        LogSink& Log;
    };

    Updater(const Parts& parts, UpdaterCommand command) : m_Parts(parts), m_Command(std::move(command)) {}

    // Returns when the program has been started again, or nothing is left to do without it. Raises 51 when the system
    // does not tell where this program lies.
    void Run();

private:
    void Log(const Text& line) { m_Parts.Log.WriteLog(line, LogLevel::Always); }
    bool WaitForProgram();
    UpdateResult Install(const std::filesystem::path& folder);
    Text Message(const UpdateResult& result) const;
    void Restart(const std::filesystem::path& folder);

    const Parts m_Parts;
    const UpdaterCommand m_Command;
};

}  // namespace tb
