// The list of known malicious sites, "MalDB" in its log lines: held scrambled in memory, matched by host suffix and URL
// prefix, kept in snapshot files. An entry is plain only for the moment of one comparison.
// Thread: the user-interface thread. Text is single-byte (see base/text.h).
#pragma once

#include <filesystem>
#include <memory>

#include "base/date.h"
#include "base/event.h"
#include "base/log.h"
#include "components/tbSender/Sender.h"
#include "platform/Files.h"
#include "sitedb/DomainTable.h"
#include "sitedb/ExpectedUrls.h"
#include "sitedb/SiteMatch.h"
#include "sitedb/UpdateGuard.h"

namespace tb {

class SnapshotReader;

// What the list asks of the program around it.
class EvilDBHost {
public:
    virtual ~EvilDBHost() = default;
    // The name of a category by its ID in the reference data. Error 91 for an unknown ID.
    virtual Text CategoryName(const Text& id) = 0;
    virtual bool IsDebugMode() = 0;
    // The servers of the update service, asked for before each update: null when the defaults data have none; error 5
    // when they name no servers at all. A program that never updates has none.
    virtual ElementPtr UpdateServers() { return nullptr; }
    // The transport of updates, with the client's identifier set: asked for once, while the list is constructed.
    virtual std::unique_ptr<Sender> MakeUpdateSender() { return nullptr; }
};

// Every operation has its trap: a failure gives one line of level 0 through LogMessage and the operation's neutral
// value; a check then says "not evil", so that the list never blocks a browser by failing.
// Dropping a list cannot fail, so that there is no line for it.
class EvilDB {
public:
    // Without a folder.
    using FileName = std::filesystem::path;

    // Snapshots lie in `folder`. `files` and `host` must outlive the list. With a guard, updates and snapshots are
    // taken only if it lets them pass.
    EvilDB(Files& files, EvilDBHost& host, std::filesystem::path folder, std::unique_ptr<UpdateGuard> guard = nullptr);
    EvilDB(const EvilDB&) = delete;
    EvilDB& operator=(const EvilDB&) = delete;

    // Every line for the log.
    Event<Text, LogLevel> LogMessage;
    // Progress of the load of a start's first file, 0 to 100.
    Event<std::int16_t> EvilLoadPercent;
    // An update was taken: lines that added and lines that deleted, also those that changed nothing.
    Event<std::int32_t, std::int32_t> EvilAdded;

    // Limit of each wait for the update service, in milliseconds; 3000 at first. 0 without a transport.
    std::int32_t Timeout() const noexcept;
    void Timeout(std::int32_t milliseconds) noexcept;
    // Entries as of the last load or save; not a live count.
    std::int32_t Count() const { return m_Count; }
    // Entries held now.
    std::int32_t LiveCount() const;
    // "YYYYMMDDHHMM" of the data held; "200001010000" when there is none.
    const Text& LastTimestamp() const { return m_LastTimestamp; }

    // Restores the newest intact snapshot, then updates unless that was the newest of all. Always "".
    Text Load(const Text& ClientKey) noexcept;
    // Asks the service for what changed since the stamp held, applies it, saves it as a snapshot and prunes old ones.
    // Always "": what goes wrong gives one line, the list then keeps what it had reached. While it waits for the
    // network, messages are served: IsEvil may be called then, another update does nothing, and the list may be
    // closed. Nothing is served while it applies and saves. Format: docs/formats/maldb-exchange.md.
    Text Update(const Text& ClientKey) noexcept;
    // The program ends: an update that waits, or comes later, changes nothing any more. Whoever began one holds the
    // list until it returns.
    void Close() { m_IsClosed = true; }

    // True when an entry of another category than 1 is a prefix of the URL, its host shortened to one of its suffixes.
    // The longest suffix wins, within it the entry added first. Category (by its name) and Validated are set on a hit
    // only.
    bool IsEvil(const Text& URL, Text& Category, Text& Validated) noexcept;

    // Prefetches what IsEvil will look at for these URLs, and takes them apart for it already. One after another each
    // waits for memory several times; together they wait as long as one. No answer depends on it.
    void Expect(const std::vector<TextView>& urls) noexcept;

    // Adds one entry behind those of its host. A duplicate of the URL is refused (one line of level 1), the stored one
    // stays.
    void AddToDB(TextView URL, TextView Category, TextView Validated) noexcept;
    // Removes the entry of that URL, whatever its category and date; one that is not there is no error.
    void DelFromDB(TextView URL, TextView Category, TextView Validated) noexcept;

    // Loads the newest snapshot that is intact; files with a wrong fingerprint or stamp are deleted on the way, and
    // `Corrupt` tells so. A file of another version, or one that ends too early, stays and ends the search. False when
    // nothing was loaded; the list is then empty or, after a failure, what it had reached.
    bool RestoreDB(bool& Corrupt) noexcept;
    // Replaces the list by one snapshot. Progress is raised for attempt 0 only. A file named as a snapshot must hold
    // the stamp of its name. A file that cannot be read to its end stays open until RestoreDB ends, or the next load.
    bool LoadDB(const std::filesystem::path& Path, std::int16_t Attempt) noexcept;
    // Writes the list as the snapshot of that stamp, whole or not at all. False after a failure; error 75 for a stamp
    // that is not twelve digits.
    bool SaveDB(const Text& Stamp, std::int32_t Fingerprint) noexcept;
    // CRC-32 over all scrambled entries in walk order; 0, with a line, for an empty list.
    std::int32_t Fingerprint() noexcept;

    // Deletes the oldest snapshots until `Keep` are left, FindRetainedFile's never. With a guard, files whose stamp it
    // does not believe stay and do not count, and the snapshot of the list in use stays, too.
    void PruneFiles(std::int16_t Keep, const Text& NewestStamp) noexcept;
    // Of the snapshots at least one day older than NewestStamp the newest one, or an empty name. Raises error 13 for a
    // stamp that is no date.
    static FileName FindRetainedFile(const std::vector<FileName>& Names, const Text& NewestStamp);
    // The moment of a stamp. Raises error 13 when it does not begin with the twelve digits of one.
    static Date StampToDate(TextView Stamp);
    // The smallest name of a snapshot in text order, `Exclude` passed over, and the largest one. Empty when there is
    // none. With a guard, of those that it believes, and the smallest is never the one in use.
    FileName MinFileVersion(const FileName& Exclude) noexcept;
    FileName MaxFileVersion() noexcept;

private:
    // Lines of an update.
    struct Changes {
        std::int32_t Added = 0;
        std::int32_t Deleted = 0;
    };

    // Error 91 without one.
    Sender& TheSender() const;
    bool FindHit(HashedUrl& url, Text& Category, Text& Validated);
    // True when an entry of the list hits, which is in `record` then; it comes with that of the first.
    bool FindInList(std::int32_t list, const HostSuffixes& url, std::optional<SiteRecord>& record) const;
    bool FindInLong(std::int32_t list, const DomainKey& key, const HostSuffixes& url,
                    std::optional<SiteRecord>& record) const;
    // Where a URL that is new goes; nothing, with a line, for one that is there.
    std::optional<DomainTable::Location> FindRoom(const DomainKey& key, TextView url, TextView decoded) const;
    void LoadEntries(SnapshotReader& reader, std::int16_t Attempt);
    void AddLoaded(TextView entry);
    std::vector<FileName> SnapshotNames();
    bool IsInUse(const FileName& name) const;
    // One line for each snapshot whose stamp the guard does not believe.
    void TellPassedOver();
    void TakeReply(const Text& error, Text reply);
    void TakeChanges(TextView plain);
    void Apply(TextView line, bool logged, Changes& changes);
    bool PassesGuard(const Text& stamp, bool anew, TextView changes);
    Text SinceStamp() const { return " - TS=" + m_LastTimestamp; }
    void Log(const Text& message, LogLevel level = LogLevel::Debug) const { LogMessage.Raise(message, level); }
    // The handler of an operation's trap.
    auto Failure(const char* text) const {
        return [this, text](const RuntimeError& error) { Log(text + error.Line(), LogLevel::Always); };
    }

    DomainTable m_Domains;
    ExpectedUrls m_Expected;
    std::unique_ptr<Sender> m_Sender;
    Files& m_Files;
    EvilDBHost& m_Host;
    std::filesystem::path m_Folder;
    std::unique_ptr<UpdateGuard> m_Guard;  // null: whatever the service says is taken
    std::unique_ptr<FileReader> m_OpenFile;
    Text m_LastTimestamp;
    std::int32_t m_Count = 0;
    bool m_IsUpdating = false;
    bool m_IsClosed = false;
};

}  // namespace tb
