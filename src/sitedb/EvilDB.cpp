#include "sitedb/EvilDB.h"

#include <algorithm>

#include "base/numbers.h"
#include "sitedb/EvilDB_record.h"
#include "sitedb/codec/Encryption.h"
#include "urlcheck/url/UrlDecode.h"

namespace tb {

EvilDB::EvilDB(Files& files, EvilDBHost& host, std::filesystem::path folder)
    : m_Files(files),
      m_Host(host),
      m_Folder(std::move(folder)),
      m_Match("Malicious Database ", [this](const Text& line) { Log(line, LogLevel::Always); }),
      m_LastTimestamp(NoDataStamp) {
    m_Domains.IgnoreCase(true);
}

std::int32_t EvilDB::LiveCount() const {
    std::int64_t count = 0;
    if (m_Domains.Count() == 0) return 0;
    for (const EntryListPtr& list : m_Domains.Values()) count += static_cast<std::int64_t>(list->size());
    return NarrowToInt32(count);
}

EvilDB::EntryUrl EvilDB::TakeApart(const Text& URL) {
    EntryUrl entry;
    entry.Clean = WithoutTrailingSlashes(LowerCase(URL));
    entry.Decoded = UrlDecode(entry.Clean);
    entry.Parts = SplitViews(entry.Decoded, '/');
    return entry;
}

Text EvilDB::KeyOf(TextView domain) { return ScrambleByLength(domain); }

void EvilDB::AddToDB(const Text& URL, const Text& Category, const Text& Validated) noexcept {
    Trap(
        [&] {
            const EntryUrl entry = TakeApart(URL);
            if (entry.Parts.size() < 3) return Log("MalDB.AddToDB: bad entry (" + entry.Clean + ")");
            Text scrambled = ScrambleByLength(entry.Clean + FieldEnd + Category + FieldEnd + Validated);
            const Text key = KeyOf(entry.Parts[2]);
            EntryListPtr list = m_Domains.Item(key);
            if (!list) {
                list = std::make_shared<EntryList>();
                list->push_back(std::move(scrambled));
                return m_Domains.Add(key, std::move(list));
            }
            for (const Text& member : *list) {
                const Record record(member);
                if (record.Url() != entry.Clean) continue;
                return Log("MalDB.AddToDB: dup entry - " + Text(record.Url()) + " (" + Text(record.Category()) + ")");
            }
            list->push_back(std::move(scrambled));
            m_Domains.Item(key, std::move(list));
        },
        Failure("MalDB.AddToDB Error: "));
}

void EvilDB::DelFromDB(const Text& URL, const Text& /*Category*/, const Text& /*Validated*/) noexcept {
    Trap(
        [&] {
            const EntryUrl entry = TakeApart(URL);
            if (entry.Parts.size() < 3) return Log("MalDB.DelFromDB: bad entry (" + entry.Decoded + ")");
            const Text domain(entry.Parts[2]);
            const Text key = KeyOf(domain);
            const EntryListPtr list = m_Domains.Item(key);
            if (!list) return Log("MalDB.DelFromDB: no domain (" + domain + ")");
            const auto found = std::find_if(list->begin(), list->end(),
                                            [&](const Text& member) { return Record(member).Url() == entry.Clean; });
            if (found != list->end()) list->erase(found);
            if (!list->empty()) return;
            m_Domains.Remove(key);
            Log("MalDB.DelFromDB: domain removed (" + domain + ")");
        },
        Failure("MalDB.DelFromDB Error: "));
}

}  // namespace tb
