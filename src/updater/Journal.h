// What an installation that has begun needs to be undone, on the disk while it lasts. Format:
// docs/formats/update-manifest.md.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "platform/Files.h"

namespace tb {

// A file of the program as it was before.
struct JournalEntry {
    Text Name;
    // The number of the update whose backup folder holds it.
    Text Number;
    // False for a file that the update has brought: it has no backup.
    bool WasThere = false;
    std::uint64_t Size = 0;
};

// While it is on the disk, putting back all of its entries gives the old version, whatever else has happened. It comes
// when all backups are there, and goes when the new version is whole or the old one is back.
struct Journal {
    // Its entries are being put back: the backup of those that are already is gone.
    bool Undoing = false;
    std::vector<JournalEntry> Entries;

    // The entry of a file, case disregarded, or null.
    const JournalEntry* Find(const Text& name) const;
};

// An empty journal where there is none. Raises what reading raises, an error of the parser, and 13 for anything that is
// no journal.
Journal LoadJournal(Files& files, const std::filesystem::path& path);

void SaveJournal(Files& files, const std::filesystem::path& path, const Journal& journal);

}  // namespace tb
