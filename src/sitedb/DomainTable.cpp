#include "sitedb/DomainTable.h"

#include <algorithm>
#include <array>

namespace tb {

namespace {

// Up to here looking at each entry costs less than the index does.
constexpr size_t LongList = 16;

// UpperCase of each byte, for the one place where that of a text is too slow.
std::array<char, 256> MakeUpperTable() {
    std::array<char, 256> table{};
    for (size_t code = 0; code < table.size(); ++code) table[code] = UpperCase(static_cast<char>(code));
    return table;
}

const std::array<char, 256> UpperTable = MakeUpperTable();

}  // namespace

TextView DomainKey::Folded(TextView domain, ShortMemory& memory) {
    char* key = memory.Take(domain.size());
    ScrambleByLength(domain, key);
    for (size_t index = 0; index < domain.size(); ++index) {
        key[index] = UpperTable[static_cast<std::uint8_t>(key[index])];
    }
    return {key, domain.size()};
}

DomainTable::Place DomainTable::Find(const DomainKey& key, TextView url) const {
    Place found;
    found.Slot = m_Slots.Find(key.Place(), [&](std::int32_t slot) {
        const Position first = FirstOf(slot);
        const Record member(Scrambled(first));
        if (member.Url() == url) found.Entry = first;
        return found.Entry != 0 || key.IsKeyOf(DecodedUrl(member.Url()).Host());
    });
    if (found.Slot != 0 && found.Entry == 0 && !url.empty()) found.Entry = FindInList(found.Slot, url);
    return found;
}

DomainTable::Position DomainTable::FindInList(std::int32_t slot, TextView url) const {
    if (IsIndexed(slot)) {
        return m_Urls.Find(HashIndex::HashOf(url), [&](Position entry) { return HasUrl(entry, url); });
    }
    const Position first = FirstOf(slot);
    Position entry = Next(first, first);
    while (entry != 0 && !HasUrl(entry, url)) entry = Next(entry, first);
    return entry;
}

void DomainTable::Add(const DomainKey& key, std::int32_t slot, TextView url, TextView scrambled) {
    // Room first: behind it nothing fails.
    m_Entries.Reserve(scrambled.size());
    if (slot == 0) {
        slot = m_Slots.Create(key.Place());
        m_Slots.Number(slot, m_Entries.Append(scrambled, 0));
    } else {
        IndexIfLong(slot);
        if (IsIndexed(slot)) m_Urls.Reserve(1);
        const Position entry = m_Entries.Append(scrambled, FirstOf(slot));
        if (IsIndexed(slot)) m_Urls.Add(HashIndex::HashOf(url), entry);
    }
    ++m_EntryCount;
}

bool DomainTable::Remove(const DomainKey& key, const Place& found) {
    if (IsIndexed(found.Slot)) m_Urls.Remove(UrlHash(found.Entry), found.Entry);
    const Position first = m_Entries.Remove(found.Entry, FirstOf(found.Slot));
    --m_EntryCount;
    if (first == 0) {
        m_Slots.Remove(found.Slot, key.Place());
    } else {
        BeginAt(found.Slot, first);
    }
    return first == 0;
}

void DomainTable::RemoveAll() { *this = {}; }

void DomainTable::PackIfSparse() {
    constexpr std::uint64_t worthIt = 1U << 20;
    if (m_Entries.Removed() < std::max(m_Entries.Used(), worthIt)) return;
    EntryLists packed;
    HashIndex urls;
    std::vector<Position> begins;
    m_Slots.Walk([&](std::int32_t slot) {
        const Position first = FirstOf(slot);
        begins.push_back(0);
        for (Position entry = first; entry != 0; entry = Next(entry, first)) {
            const Position moved = packed.Append(Scrambled(entry), begins.back());
            if (begins.back() == 0) begins.back() = moved;
            if (IsIndexed(slot)) urls.Add(UrlHash(entry), moved);
        }
    });
    m_Entries = std::move(packed);
    m_Urls = std::move(urls);
    size_t list = 0;
    m_Slots.Walk([&](std::int32_t slot) { BeginAt(slot, begins[list++]); });
}

void DomainTable::IndexIfLong(std::int32_t slot) {
    if (IsIndexed(slot)) return;
    const Position first = FirstOf(slot);
    size_t length = 0;
    for (Position entry = first; entry != 0; entry = Next(entry, first)) ++length;
    if (length < LongList) return;
    // It has just this many: one that is not indexed never gets longer.
    std::array<std::pair<std::uint32_t, Position>, LongList> members;
    Position next = first;
    for (auto& [hash, entry] : members) {
        hash = UrlHash(next);
        entry = next;
        next = Next(next, first);
    }
    m_Urls.Reserve(members.size());
    for (const auto& [hash, entry] : members) m_Urls.Add(hash, entry);
    m_Slots.Number(slot, first | Indexed);
}

}  // namespace tb
