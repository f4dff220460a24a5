// The gates of the start that ask whether this copy may run, and what must happen first. A defect of the installation
// is healed by an update rather than told as an error: it raises App::NeedToUpdate and the start passes, unless updates
// wait on the disk already. The gates answer True to stop the start; nothing is raised.
#pragma once

#include "base/log.h"
#include "shell/helpers/App.h"

namespace tb {

class InstallationGates {
public:
    // Both outlive the gates.
    InstallationGates(App& app, LogSink& log) : m_App(app), m_Log(log) {}

    // Enters the ten components into App::Components, each required.
    void AddComponents() noexcept;
    bool CheckForMissingComponents() noexcept;
    // By the versions WARNVER and EXPIREVER of the defaults data.
    bool CheckExpireOrWarnVersion() noexcept;
    // The program's file bears another name than the program, case aside.
    bool CheckName() noexcept;
    // To be asked when no other instance runs.
    bool CheckUpdaterRunning() noexcept;
    // Asks the user to install what waits, unasked goes on with an installation that was broken off. True when the
    // updater was started.
    bool CheckInstallPendingUpdates() noexcept;

private:
    bool ListMissing();
    bool CompareVersions();
    Text VersionOfDefaults(TextView name) const;
    bool IsUpdaterRunning() const;
    bool RefuseUntilInstalled(std::int32_t icon);
    void Log(const Text& line) const { m_Log.WriteLog(line, LogLevel::Always); }
    const Text& Product() const { return m_App.Product.ProductName; }

    // Runs a gate; an error is one line, and the start passes.
    template <typename Gate>
    bool Guarded(const char* name, Gate gate) noexcept;

    App& m_App;
    LogSink& m_Log;
};

}  // namespace tb
