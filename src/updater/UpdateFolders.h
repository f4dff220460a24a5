// Where the updater finds and leaves what. Format: docs/formats/update-manifest.md.
#pragma once

#include <filesystem>

#include "base/codepage.h"
#include "refdata/manifest/UpdateManifest.h"

namespace tb {

struct UpdateFolders {
    explicit UpdateFolders(std::filesystem::path programFolder) : Program(std::move(programFolder)) {}

    std::filesystem::path Installed(const Text& name) const { return Program / TextPath(name); }
    std::filesystem::path Staged(const Text& name) const { return Updates / TextPath(name); }
    // The folder for the files that the update of that number replaces.
    std::filesystem::path BackupOf(const Text& number) const { return Backup / TextPath(number); }
    std::filesystem::path Saved(const Text& number, const Text& name) const {
        return BackupOf(number) / TextPath(name);
    }
    // The copy of a staged file that takes its place in the program's folder. No plain name ends so.
    std::filesystem::path Prepared(const Text& number, const Text& name) const {
        return BackupOf(number) / TextPath(name + ".new~");
    }
    // Where a library goes that somebody has loaded; `count` tells several apart.
    std::filesystem::path Aside(const Text& number, const Text& name, int count) const {
        return BackupOf(number) / TextPath(name + ".used" + std::to_string(count) + "~");
    }

    const std::filesystem::path Program;
    const std::filesystem::path Updates = Program / UpdatesFolderName;
    const std::filesystem::path Backup = Updates / BackupFolderName;
    const std::filesystem::path Manifest = Updates / TextPath(ManifestName);
    // Not among the staged files, which a check deletes.
    const std::filesystem::path Journal = Backup / JournalName;
};

}  // namespace tb
