#include "refdata/PendingUpdates.h"

#include "base/codepage.h"

namespace tb {

std::filesystem::path UpdatesFolder(const App& app) { return app.Path() / UpdatesFolderName; }

std::filesystem::path BackupFolder(const App& app) { return UpdatesFolder(app) / BackupFolderName; }

std::filesystem::path PendingManifest(const App& app) { return UpdatesFolder(app) / TextPath(ManifestName); }

bool HasPendingUpdates(const App& app) { return app.System.Files.Exists(PendingManifest(app)); }

bool IsInstallationBrokenOff(const App& app) { return app.System.Files.Exists(BackupFolder(app) / JournalName); }

bool LaunchUpdater(const App& app, LogSink& log) {
    const Text& product = app.Product.ProductName;
    const Text updater = app.AppPath() + "\\" + Text(UpdaterName);
    const Text program = product + ".exe";
    log.WriteLog("Launching " + product + " updater program (LaunchUpdater): " + program, LogLevel::Always);
    // The line is unquoted, and the folder may have blanks or characters outside the code page in its name: which file
    // to start is told apart from it.
    const std::uint32_t process =
        app.System.Processes.StartProgram(app.Path() / TextPath(UpdaterName), updater + " " + program + " " + product);
    if (process != 0) {
        log.WriteLog(updater + " started (" + std::to_string(process) + ")", LogLevel::Always);
        return true;
    }
    const Text failed = product + " " + Text(UpdaterName) + " updater program did not start";
    log.WriteLog(failed + " (0), " + updater, LogLevel::Always);
    app.System.Dialogs.ShowMessage(failed + ".", MessageButtons::Exclamation, product);
    return false;
}

}  // namespace tb
