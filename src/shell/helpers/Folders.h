// Folders of the program.
#pragma once

#include "shell/helpers/App.h"

namespace tb {

inline bool DirectoryExists(const App& app, const std::filesystem::path& folder) {
    return app.System.Files.FolderExists(folder);
}

// Makes a folder that is not there, one level of it. Raises what making it raises.
inline void EnsureDirectory(const App& app, const std::filesystem::path& folder) {
    if (!DirectoryExists(app, folder)) app.System.Files.MakeFolder(folder);
}

}  // namespace tb
