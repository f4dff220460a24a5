#include <optional>

#include "base/numbers.h"
#include "sitedb/EvilDB.h"
#include "sitedb/SiteUrl.h"

namespace tb {

namespace {

// Entries of this category stay in the list but never block.
constexpr double PassedOverCategory = 1.0;

// Raises error 13 for a category that is no number, 6 for one beyond all numbers.
bool IsPassedOver(TextView category) {
    const bool oneDigit = category.size() == 1 && category[0] >= '0' && category[0] <= '9';
    return oneDigit ? category[0] == '1' : ToDouble(category) == PassedOverCategory;
}

// Whether the URL, its host shortened to the present suffix, begins with a pattern.
bool BeginsWith(const HostSuffixes& url, TextView pattern) {
    const TextView before = url.BeforeHost();
    if (pattern.size() <= before.size()) return SiteMatch::InitialMatch(before, pattern);
    return SiteMatch::InitialMatch(pattern, before) &&
           SiteMatch::InitialMatch(url.FromSuffix(), pattern.substr(before.size()));
}

}  // namespace

bool EvilDB::IsEvil(const Text& URL, Text& Category, Text& Validated) noexcept {
    return TrapOr(
        false,
        [&] {
            if (HashedUrl* const expected = m_Expected.Take(URL)) return FindHit(*expected, Category, Validated);
            // The index cells of all suffixes are on their way while the first one is looked up.
            HashedUrl url(URL, [this](const DomainHash& domain) { m_Domains.Prefetch(domain); });
            return FindHit(url, Category, Validated);
        },
        Failure("Malicious Database IsEvil Error:: "));
}

void EvilDB::Expect(const std::vector<TextView>& urls) noexcept {
    // A machine with less to go on is slower, nothing else.
    Trap(
        [&] {
            std::vector<DomainHash> domains;
            domains.reserve(4 * urls.size());
            m_Expected.Replace(urls, [&](const DomainHash& domain) {
                m_Domains.Prefetch(domain);
                domains.push_back(domain);
            });
            m_Domains.PrefetchLists(domains);
        },
        [](const RuntimeError&) {});
}

bool EvilDB::FindHit(HashedUrl& url, Text& Category, Text& Validated) {
    HostSuffixes& suffixes = url.Suffixes();
    for (size_t suffix = 0; suffixes.Next(); ++suffix) {
        const DomainKey key = url.KeyOf(suffix);
        std::optional<SiteRecord> record;
        const std::int32_t list = m_Domains.FindList(key, record);
        if (list == 0) continue;
        if (!(m_Domains.IsLong(list) ? FindInLong(list, key, suffixes, record) : FindInList(list, suffixes, record)))
            continue;
        Text name = m_Host.CategoryName(Text(record->Category()));
        Validated = record->Validated();
        Category = std::move(name);
        return true;
    }
    return false;
}

bool EvilDB::FindInList(std::int32_t list, const HostSuffixes& url, std::optional<SiteRecord>& record) const {
    const DomainTable::Position first = m_Domains.FirstOf(list);
    for (auto entry = first;;) {
        // The number is read whether or not the URL matches: one that is none fails the whole search.
        if (!IsPassedOver(record->Category()) && BeginsWith(url, DecodedUrl(*record).Whole())) return true;
        entry = m_Domains.Next(entry, first);
        if (entry == 0) return false;
        record.emplace(m_Domains.Scrambled(entry));
    }
}

bool EvilDB::FindInLong(std::int32_t list, const DomainKey& key, const HostSuffixes& url,
                        std::optional<SiteRecord>& record) const {
    // The same answer as from a walk: the first entry that matches, or the failure of one before it.
    DomainTable::Position hit = 0;
    const DomainTable::Position failing = m_Domains.FirstUncounted(list);
    m_Domains.ForEachPrefix(url.BeforeHost(), url.FromSuffix(), [&](DomainTable::Position entry) {
        if ((hit != 0 && entry > hit) || (failing != 0 && entry >= failing)) return;
        const SiteRecord member(m_Domains.Scrambled(entry));
        const DecodedUrl pattern(member);
        // Of another list, one entry could be a prefix, too.
        if (!BeginsWith(url, pattern.Whole()) || !key.IsKeyOf(pattern.Host())) return;
        if (!IsPassedOver(member.Category())) hit = entry;
    });
    if (hit == 0 && failing != 0) IsPassedOver(SiteRecord(m_Domains.Scrambled(failing)).Category());
    if (hit != 0) record.emplace(m_Domains.Scrambled(hit));
    return hit != 0;
}

}  // namespace tb
