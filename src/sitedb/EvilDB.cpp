#include "sitedb/EvilDB.h"

#include "base/numbers.h"

namespace tb {

EvilDB::EvilDB(Files& files, EvilDBHost& host, std::filesystem::path folder)
    : m_Files(files),
      m_Host(host),
      m_Folder(std::move(folder)),
      m_Match("Malicious Database ", [this](const Text& line) { Log(line, LogLevel::Always); }),
      m_LastTimestamp(NoDataStamp) {
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
            const DomainKey key(url.Decoded().Host());
            const DomainTable::Place place = m_Domains.Find(key, url.Clean());
            if (place.Entry != 0) {
                const Record held(m_Domains.Scrambled(place.Entry));
                return Log("MalDB.AddToDB: dup entry - " + Text(held.Url()) + " (" + Text(held.Category()) + ")");
            }
            const ScrambledRecord record(url.Clean(), Category, Validated);
            m_Domains.Add(key, place.Slot, url.Clean(), record.Bytes());
        },
        Failure("MalDB.AddToDB Error: "));
}

void EvilDB::DelFromDB(TextView URL, TextView /*Category*/, TextView /*Validated*/) noexcept {
    Trap(
        [&] {
            const SiteUrl url(URL);
            if (!url.Decoded().HasHost())
                return Log("MalDB.DelFromDB: bad entry (" + Text(url.Decoded().Whole()) + ")");
            const TextView domain = url.Decoded().Host();
            const DomainKey key(domain);
            const DomainTable::Place place = m_Domains.Find(key, url.Clean());
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
