// The list of known malicious sites, "MalDB" in its log lines: held scrambled in memory, matched by host suffix and URL
// prefix, kept in snapshot files. An entry is plain only for the moment of one comparison.
// Thread: the user-interface thread. Text is single-byte (see base/text.h).
#pragma once

#include <filesystem>
#include <memory>

#include "base/event.h"
#include "base/log.h"
#include "platform/Files.h"
#include "sitedb/HashTable.h"
#include "sitedb/SiteMatch.h"

namespace tb {

// What the list asks of the program around it.
class EvilDBHost {
public:
    virtual ~EvilDBHost() = default;
    // The name of a category by its ID in the reference data. Error 91 for an unknown ID.
    virtual Text CategoryName(const Text& id) = 0;
    virtual bool IsDebugMode() = 0;
};

// Every operation has its trap: a failure gives one line of level 0 through LogMessage and the operation's neutral
// value; a check then says "not evil", so that the list never blocks a browser by failing.
class EvilDB {
public:
    // Snapshots lie in `folder`. `files` and `host` must outlive the list.
    EvilDB(Files& files, EvilDBHost& host, std::filesystem::path folder);
    EvilDB(const EvilDB&) = delete;
    EvilDB& operator=(const EvilDB&) = delete;

    // Every line for the log.
    Event<Text, LogLevel> LogMessage;
    // Progress of the load of a start's first file, 0 to 100.
    Event<std::int16_t> EvilLoadPercent;

    // Entries as of the last load or save; not a live count.
    std::int32_t Count() const { return m_Count; }
    // Entries held now, counted anew.
    std::int32_t LiveCount() const;
    // "YYYYMMDDHHMM" of the data held; "200001010000" when there is none.
    const Text& LastTimestamp() const { return m_LastTimestamp; }

    // True when an entry of another category than 1 is a prefix of the URL, its host shortened to one of its suffixes.
    // The longest suffix wins, within it the entry added first. Category (by its name) and Validated are set on a hit
    // only.
    bool IsEvil(const Text& URL, Text& Category, Text& Validated) noexcept;

    // Adds one entry behind those of its host. A duplicate of the URL is refused (one line of level 1), the stored one
    // stays.
    void AddToDB(const Text& URL, const Text& Category, const Text& Validated) noexcept;
    // Removes the entry of that URL, whatever its category and date; one that is not there is no error.
    void DelFromDB(const Text& URL, const Text& Category, const Text& Validated) noexcept;

    // Loads the newest snapshot that is intact; files with a wrong fingerprint or stamp are deleted on the way, and
    // `Corrupt` tells so. A file of another version, or one that ends too early, stays and ends the search. False when
    // nothing was loaded; the list is then empty or, after a failure, what it had reached.
    bool RestoreDB(bool& Corrupt) noexcept;
    // Replaces the list by one snapshot. Progress is raised for attempt 0 only. A file named as a snapshot must hold
    // the stamp of its name. After a file that cannot be read to its end it stays open until the next load.
    bool LoadDB(const std::filesystem::path& Path, std::int16_t Attempt) noexcept;
    // Writes the list as the snapshot of that stamp, whole or not at all. False after a failure.
    bool SaveDB(const Text& Stamp, std::int32_t Fingerprint) noexcept;
    // CRC-32 over all scrambled entries in walk order; 0, with a line, for an empty list.
    std::int32_t Fingerprint() noexcept;

private:
    // The scrambled entries of one domain key, in the order of adding.
    using EntryList = std::vector<Text>;
    using EntryListPtr = std::shared_ptr<EntryList>;

    // An entry's URL as it is stored, and the parts of its decoded form.
    struct EntryUrl {
        Text Clean;
        Text Decoded;
        std::vector<TextView> Parts;  // of Decoded
    };

    static EntryUrl TakeApart(const Text& URL);
    static Text KeyOf(TextView domain);
    bool FindHit(TextView loweredUrl, Text& Category, Text& Validated);
    bool MatchList(const EntryList& list, TextView candidate, Text& Category, Text& Validated);
    // The last file name in text order of those that begin with "TBDB" and end in ".BIN", or an empty one.
    std::filesystem::path MaxFileVersion() noexcept;
    void LoadEntries(class SnapshotReader& reader, std::int16_t Attempt);
    void AddLoaded(const Text& entry);
    void Log(const Text& message, LogLevel level = LogLevel::Debug) const { LogMessage.Raise(message, level); }
    // The handler of an operation's trap.
    auto Failure(const char* text) const {
        return [this, text](const RuntimeError& error) { Log(text + error.Line(), LogLevel::Always); };
    }

    HashTable<EntryListPtr> m_Domains;
    Files& m_Files;
    EvilDBHost& m_Host;
    std::filesystem::path m_Folder;
    SiteMatch m_Match;
    std::unique_ptr<FileReader> m_OpenFile;
    Text m_LastTimestamp;
    std::int32_t m_Count = 0;
};

}  // namespace tb
