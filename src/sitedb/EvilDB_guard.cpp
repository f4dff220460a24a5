// What the guard is told about an update before the list takes it.
#include "sitedb/EntrySet.h"
#include "sitedb/EvilDB.h"
#include "sitedb/UpdateReply.h"

namespace tb {

namespace {

// Lines that may take an entry out.
std::int64_t CountDeletions(TextView changes) {
    std::int64_t count = 0;
    for (TextView rest = changes; !rest.empty();) {
        const TextView line = TakeLine(rest);
        if (!line.empty() && Left(line, 2) != "+\t") ++count;
    }
    return count;
}

// False for a change whose entry would be too long to be stored.
bool Fits(const ChangeLine& change) {
    constexpr size_t longest = 32767;
    const auto& [mark, url, category, validated] = change.Fields;
    return WithoutTrailingSlashes(url).size() + category.size() + validated.size() + 2 <= longest;
}

}  // namespace

bool EvilDB::PassesGuard(const Text& stamp, bool anew, TextView changes) {
    if (!m_Guard->TakesStamp(stamp)) return false;
    const std::int64_t held = m_Domains.EntryCount();
    return m_Guard->Passes(CountKept(anew, changes, m_Guard->LeastKept(held)), held);
}

std::int64_t EvilDB::CountKept(bool anew, TextView changes, std::int64_t enough) const {
    std::int64_t kept = anew ? 0 : m_Domains.EntryCount();
    // Nearly always so many stay whatever is deleted.
    const std::int64_t deletions = enough > 0 ? CountDeletions(changes) : 0;
    if (!anew && kept >= enough + deletions) return kept;
    // Those that are there now where they were not at first, or the other way round: the last change of a URL counts.
    EntrySet turned;
    for (TextView rest = changes; !rest.empty() && (!anew || kept < enough + deletions);) {
        const ChangeLine change(TakeLine(rest));
        if (!change.IsWhole() || (change.Adds() && !Fits(change))) continue;
        const DomainTable::Position entry = FindEntry(change.Fields[1]);
        if (entry == 0) continue;
        const bool turns = change.Adds() == anew ? turned.Add(entry) : turned.Remove(entry);
        if (turns) kept += change.Adds() ? 1 : -1;
    }
    return kept;
}

DomainTable::Position EvilDB::FindEntry(TextView url) const {
    DomainTable::Position entry = 0;
    Trap(
        [&] {
            const SiteUrl site(url);
            if (!site.Decoded().HasHost()) return;
            const DomainKey key(site.Decoded().Host());
            entry = m_Domains.Find(key, site.Clean(), site.Decoded().Whole()).Entry;
        },
        [](const RuntimeError&) { /* the list would refuse it, too */ });
    return entry;
}

}  // namespace tb
