#include "sitedb/EvilDB.h"

#include "base/numbers.h"

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
    std::int32_t result = 0;
    Trap([&] { result = TheSender().Timeout(); }, Failure("Malicious Database Timeout: "));
    return result;
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
            Store({url.Clean(), hasTab ? TextView() : url.Decoded().Whole(), url.Decoded().Host(), category},
                  [&] { return ScrambledRecord(url.Clean(), Category, Validated); });
        },
        Failure("MalDB.AddToDB Error: "));
}

void EvilDB::AddLoaded(TextView entry) {
    const Record record(entry);
    if (record.FieldCount() != 3) return Log("MalDB.LoadDB: bad entry (" + Text(record.Plain()) + ")");
    TextView domain;
    const TextView url = record.Url();
    // Nearly every entry is as it would be stored anew, down to its scrambled bytes.
    const bool isClean = !record.MayDecode() && !record.MayFold() && WithoutTrailingSlashes(url) == url;
    if (!isClean || !record.FindHost(domain)) return AddToDB(url, record.Category(), record.Validated());
    Trap(
        [&] {
            Store({url, url, domain, record.Category()}, [&] { return StoredRecord(entry); });
        },
        Failure("MalDB.AddToDB Error: "));
}

template <typename Scrambled>
void EvilDB::Store(const NewSite& site, Scrambled scrambled) {
    const DomainKey key(site.Domain);
    const DomainTable::Place place = m_Domains.Find(key, site.Url, site.Decoded);
    if (place.Entry == 0) return m_Domains.Add(key, place, site.Decoded, site.Category, scrambled().Bytes());
    const Record held(m_Domains.Scrambled(place.Entry));
    Log("MalDB.AddToDB: dup entry - " + Text(held.Url()) + " (" + Text(held.Category()) + ")");
}

void EvilDB::DelFromDB(TextView URL, TextView /*Category*/, TextView /*Validated*/) noexcept {
    Trap(
        [&] {
            const SiteUrl url(URL);
            if (!url.Decoded().HasHost())
                return Log("MalDB.DelFromDB: bad entry (" + Text(url.Decoded().Whole()) + ")");
            const TextView domain = url.Decoded().Host();
            const DomainKey key(domain);
            const DomainTable::Place place = m_Domains.Find(key, url.Clean(), url.Decoded().Whole());
            if (place.Slot == 0) return Log("MalDB.DelFromDB: no domain (" + Text(domain) + ")");
            if (place.Entry == 0 || !m_Domains.Remove(key, place)) return;
            Log("MalDB.DelFromDB: domain removed (" + Text(domain) + ")");
        },
        Failure("MalDB.DelFromDB Error: "));
}

Sender& EvilDB::TheSender() const {
    if (!m_Sender) throw Error(ErrorNumber::ObjectNotSet);
    return *m_Sender;
}

}  // namespace tb
