#include "sitedb/EvilDB.h"

#include "base/numbers.h"
#include "sitedb/SiteUrl.h"
#include "sitedb/SnapshotFile.h"

namespace tb {

EvilDB::EvilDB(Files& files, EvilDBHost& host, std::filesystem::path folder, std::unique_ptr<UpdateGuard> guard)
    : m_Files(files),
      m_Host(host),
      m_Folder(std::move(folder)),
      m_Guard(std::move(guard)),
      m_LastTimestamp(NoDataStamp) {
    if (m_Guard) m_Guard->LogMessage.Connect([this](const Text& line, LogLevel level) { Log(line, level); });
    Trap(
        [&] {
            m_Sender = m_Host.MakeUpdateSender();
            if (m_Sender) m_Sender->Timeout(Sender::DefaultTimeout);
        },
        Failure("Malicious Database Initialize Error: "));
}

std::int32_t EvilDB::Timeout() const noexcept {
    return TrapOr(
        0, [&] { return TheSender().Timeout(); }, Failure("Malicious Database Timeout: "));
}

void EvilDB::Timeout(std::int32_t milliseconds) noexcept {
    Trap([&] { TheSender().Timeout(milliseconds); }, Failure("Malicious Database Timeout: "));
}

std::int32_t EvilDB::LiveCount() const { return NarrowToInt32(m_Domains.EntryCount()); }

void EvilDB::AddToDB(TextView URL, TextView Category, TextView Validated) noexcept {
    Trap(
        [&] {
            const SiteUrl url(URL);
            if (!url.Decoded().HasHost()) return Log("MalDB.AddToDB: bad entry (" + Text(url.Clean()) + ")");
            // A field ends at a tab, wherever that came from.
            const bool hasTab = url.Clean().find(FieldEnd) != TextView::npos;
            const TextView category = Category.substr(0, Category.find(FieldEnd));
            const TextView decoded = hasTab ? TextView() : url.Decoded().Whole();
            const DomainKey key(url.Decoded().Host());
            const auto room = FindRoom(key, url.Clean(), decoded);
            if (!room) return;
            m_Domains.Add(key, *room, decoded, category, ScrambledRecord(url.Clean(), Category, Validated).Bytes());
        },
        Failure("MalDB.AddToDB Error: "));
}

void EvilDB::AddLoaded(TextView entry) {
    const SiteRecord record(entry);
    if (record.FieldCount() != 3) return Log("MalDB.LoadDB: bad entry (" + Text(record.Plain()) + ")");
    const TextView url = record.Url();
    // Nearly every entry is as it would be stored anew, down to its scrambled bytes.
    const bool isClean = !record.MayDecode() && !record.MayFold() && WithoutTrailingSlashes(url) == url;
    const auto domain = record.Authority();
    if (!isClean || !domain) return AddToDB(url, record.Category(), record.Validated());
    Trap(
        [&] {
            const DomainKey key(*domain);
            if (const auto room = FindRoom(key, url, url)) m_Domains.Add(key, *room, url, record.Category(), entry);
        },
        Failure("MalDB.AddToDB Error: "));
}

std::optional<DomainTable::Location> EvilDB::FindRoom(const DomainKey& key, TextView url, TextView decoded) const {
    const DomainTable::Location found = m_Domains.Find(key, url, decoded);
    if (found.Entry == 0) return found;
    const SiteRecord held(m_Domains.Scrambled(found.Entry));
    Log("MalDB.AddToDB: dup entry - " + Text(held.Url()) + " (" + Text(held.Category()) + ")");
    return std::nullopt;
}

void EvilDB::DelFromDB(TextView URL, TextView /*Category*/, TextView /*Validated*/) noexcept {
    Trap(
        [&] {
            const SiteUrl url(URL);
            if (!url.Decoded().HasHost())
                return Log("MalDB.DelFromDB: bad entry (" + Text(url.Decoded().Whole()) + ")");
            const TextView domain = url.Decoded().Host();
            const DomainKey key(domain);
            const DomainTable::Location found = m_Domains.Find(key, url.Clean(), url.Decoded().Whole());
            if (found.Slot == 0) return Log("MalDB.DelFromDB: no domain (" + Text(domain) + ")");
            if (found.Entry == 0 || !m_Domains.Remove(key, found)) return;
            Log("MalDB.DelFromDB: domain removed (" + Text(domain) + ")");
        },
        Failure("MalDB.DelFromDB Error: "));
}

Sender& EvilDB::TheSender() const {
    if (!m_Sender) throw Error(ErrorNumber::ObjectNotSet);
    return *m_Sender;
}

}  // namespace tb
