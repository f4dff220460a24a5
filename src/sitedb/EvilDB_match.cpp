#include <algorithm>

#include "base/numbers.h"
#include "sitedb/EvilDB.h"
#include "sitedb/EvilDB_record.h"

namespace tb {

namespace {

// Entries of this category stay in the list but never block.
constexpr double PassedOverCategory = 1.0;

}  // namespace

bool EvilDB::IsEvil(const Text& URL, Text& Category, Text& Validated) noexcept {
    bool result = false;
    Trap([&] { result = FindHit(LowerCase(URL), Category, Validated); }, Failure("Malicious Database IsEvil Error:: "));
    return result;
}

bool EvilDB::FindHit(TextView loweredUrl, Text& Category, Text& Validated) {
    const std::vector<TextView> urlParts = SplitViews(loweredUrl, '/');
    if (urlParts.size() < 3) return false;
    // A port or user name stays inside its label; the scheme is not looked at.
    const std::vector<TextView> labels = SplitViews(urlParts[2], '.');
    const std::int16_t highest = NarrowToInt16(static_cast<std::int64_t>(labels.size()) - 1);
    const int last = std::max(highest - 1, 0);
    for (int first = 0; first <= last; ++first) {
        const Text suffix = m_Match.SubJoin(labels, static_cast<std::int16_t>(first), highest, ".");
        const DomainTable::Position list = m_Domains.First(DomainKey(suffix));
        if (list != 0 && MatchList(list, m_Match.Substitution(urlParts, 2, suffix), Category, Validated)) return true;
    }
    return false;
}

bool EvilDB::MatchList(DomainTable::Position list, TextView candidate, Text& Category, Text& Validated) {
    for (auto entry = list; entry != 0; entry = m_Domains.Next(entry, list)) {
        const Record record(m_Domains.Scrambled(entry));
        const bool matches = SiteMatch::InitialMatch(candidate, DecodedUrl(record.Url()).Whole());
        // The number is read whether or not the URL matches: one that is none fails the whole search.
        const bool counts = ToDouble(record.Category()) != PassedOverCategory;
        if (!matches || !counts) continue;
        const Text name = m_Host.CategoryName(Text(record.Category()));
        Validated = record.Validated();
        Category = name;
        return true;
    }
    return false;
}

}  // namespace tb
