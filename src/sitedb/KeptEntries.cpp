#include "sitedb/KeptEntries.h"

#include "sitedb/SiteUrl.h"
#include "sitedb/UpdateReply.h"

namespace tb {

namespace {

// Entries of the list by their positions: a bit for every eight bytes of entries, no two of which begin in the same
// eight.
class EntrySet {
public:
    // True when it was not in there.
    bool Add(EntryLists::Position entry) {
        const size_t bit = entry / EntryLists::LeastDistance;
        if (bit >= m_Bits.size()) m_Bits.resize(bit + 1);
        if (m_Bits[bit]) return false;
        m_Bits[bit] = true;
        return true;
    }
    // True when it was in there.
    bool Remove(EntryLists::Position entry) {
        const size_t bit = entry / EntryLists::LeastDistance;
        if (bit >= m_Bits.size() || !m_Bits[bit]) return false;
        m_Bits[bit] = false;
        return true;
    }

private:
    std::vector<bool> m_Bits;
};

// Lines that may take an entry out.
std::int64_t CountDeletions(TextView changes) {
    std::int64_t count = 0;
    for (TextView rest = changes; !rest.empty();) {
        const TextView line = TakeLine(rest);
        if (!line.empty() && !line.starts_with("+\t")) ++count;
    }
    return count;
}

// False for a change whose entry would be too long to be stored.
bool Fits(const ChangeLine& change) {
    constexpr size_t longest = 32767;
    const auto& [mark, url, category, validated] = change.Fields;
    return WithoutTrailingSlashes(url).size() + category.size() + validated.size() + 2 <= longest;
}

// The entry of a URL from outside; 0 when there is none.
DomainTable::Position FindEntry(const DomainTable& held, TextView url) {
    return TrapOr(
        DomainTable::Position{0},
        [&] {
            const SiteUrl site(url);
            if (!site.Decoded().HasHost()) return DomainTable::Position{0};
            const DomainKey key(site.Decoded().Host());
            return held.Find(key, site.Clean(), site.Decoded().Whole()).Entry;
        },
        [](const RuntimeError&) { /* the list would refuse it, too */ });
}

}  // namespace

std::int64_t CountKept(const DomainTable& held, bool anew, TextView changes, std::int64_t enough) {
    std::int64_t kept = anew ? 0 : held.EntryCount();
    // Nearly always so many stay whatever is deleted.
    const std::int64_t deletions = enough > 0 ? CountDeletions(changes) : 0;
    if (!anew && kept >= enough + deletions) return kept;
    // Those that are there now where they were not at first, or the other way round: the last change of a URL counts.
    EntrySet turned;
    for (TextView rest = changes; !rest.empty() && (!anew || kept < enough + deletions);) {
        const ChangeLine change(TakeLine(rest));
        if (!change.IsWhole() || (change.Adds() && !Fits(change))) continue;
        const DomainTable::Position entry = FindEntry(held, change.Fields[1]);
        if (entry == 0) continue;
        const bool turns = change.Adds() == anew ? turned.Add(entry) : turned.Remove(entry);
        if (turns) kept += change.Adds() ? 1 : -1;
    }
    return kept;
}

}  // namespace tb
