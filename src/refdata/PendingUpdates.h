// What an update check leaves for the updater, the program beside this one: files and a manifest in a folder of their
// own. Without the manifest nothing is pending, whatever else lies there.
#pragma once

#include <filesystem>

#include "base/log.h"
#include "refdata/manifest/UpdateManifest.h"
#include "shell/helpers/App.h"

namespace tb {

// "Updates" in the program's folder: the staged files and the pending manifest.
std::filesystem::path UpdatesFolder(const App& app);
// "Backup" in there, with one folder for each manifest, named by its number.
std::filesystem::path BackupFolder(const App& app);
std::filesystem::path PendingManifest(const App& app);

bool HasPendingUpdates(const App& app);

// The updater was broken off while it replaced files: they may be of two versions until it has run again.
bool IsInstallationBrokenOff(const App& app);

// Starts the updater, which waits for this program to leave; every step is a line of level 0 on `log`. When it does not
// start, a plain message tells the user, and False.
bool LaunchUpdater(const App& app, LogSink& log);

}  // namespace tb
