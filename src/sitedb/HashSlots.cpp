#include "sitedb/HashSlots.h"

#include <functional>

#include "base/errors.h"

namespace tb {

namespace {

constexpr std::int32_t TableError = 1001;

std::uint32_t IndexHashOf(TextView key) {
    const auto hash = static_cast<std::uint64_t>(std::hash<TextView>()(key));
    return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

}  // namespace

void HashSlots::IgnoreCase(bool ignore) {
    if (m_ItemCount != 0) throw RuntimeError(TableError, "The Hash Table isn't empty");
    m_IgnoreCase = ignore;
}

std::int32_t HashSlots::Find(const Text& key) const {
    const Text folded = Folded(key);
    BucketOf(folded);
    return m_Index[IndexPlace(folded, IndexHashOf(folded))];
}

std::int32_t HashSlots::FindOrCreate(const Text& key, bool& created) {
    Text folded = Folded(key);
    const size_t bucket = BucketOf(folded);
    const std::uint32_t hash = IndexHashOf(folded);
    const std::int32_t found = m_Index[IndexPlace(folded, hash)];
    created = found == 0;
    if (!created) return found;
    if (static_cast<size_t>(m_ItemCount) * 2 >= m_Index.size()) GrowIndex();
    const std::int32_t slot = TakeFreeSlot();
    m_Index[IndexPlace(folded, hash)] = slot;
    At(slot).Key = std::move(folded);
    At(slot).IndexHash = hash;
    LinkSlot(slot, bucket);
    return slot;
}

std::int32_t HashSlots::Remove(const Text& key) {
    const std::int32_t slot = Find(key);
    if (slot == 0) throw Error(ErrorNumber::InvalidCall);
    const size_t bucket = BucketOf(KeyOf(slot));
    RemoveFromIndex(slot);
    Slot& removed = At(slot);
    (removed.Previous != 0 ? At(removed.Previous).NextSlot : m_BucketHeads[bucket]) = removed.NextSlot;
    (removed.NextSlot != 0 ? At(removed.NextSlot).Previous : m_BucketTails[bucket]) = removed.Previous;
    removed.NextSlot = m_FreeHead;
    m_FreeHead = slot;
    --m_ItemCount;
    return slot;
}

std::vector<std::int32_t> HashSlots::Walk() const {
    std::vector<std::int32_t> slots;
    slots.reserve(static_cast<size_t>(m_ItemCount));
    for (std::int32_t slot : m_BucketHeads) {
        for (; slot != 0; slot = m_Slots[static_cast<size_t>(slot)].NextSlot) slots.push_back(slot);
    }
    return slots;
}

std::int32_t HashSlots::HashOfKey(TextView key) {
    std::uint32_t hash = 0;
    for (size_t index = 0; index < key.size(); ++index) {
        hash ^= static_cast<std::uint32_t>(static_cast<std::uint8_t>(key[index])) << (index % 4 * 8);
    }
    return static_cast<std::int32_t>(hash);
}

void HashSlots::Resize(std::int32_t hashSize, std::int32_t listSize, std::int32_t chunkSize) {
    m_HashSize = hashSize;
    if (listSize > 0) m_ListSize = listSize;
    if (chunkSize > 0) m_ChunkSize = chunkSize;
    m_ItemCount = 0;
    m_FreeHead = 0;
    m_BucketHeads.assign(static_cast<size_t>(m_HashSize), 0);
    m_BucketTails.assign(static_cast<size_t>(m_HashSize), 0);
    std::vector<Slot>(1).swap(m_Slots);
    std::vector<std::int32_t>(static_cast<size_t>(m_ListSize) * 2).swap(m_Index);
    ExpandSlots(m_ListSize);
}

void HashSlots::ExpandSlots(std::int32_t extra) {
    const auto first = static_cast<std::int32_t>(m_Slots.size());
    m_Slots.resize(m_Slots.size() + static_cast<size_t>(extra));
    for (std::int32_t slot = first; slot < first + extra; ++slot) At(slot).NextSlot = slot + 1;
    m_Slots.back().NextSlot = m_FreeHead;
    m_FreeHead = first;
}

Text HashSlots::Folded(const Text& key) const {
    if (key.empty()) throw RuntimeError(TableError, "Invalid key");
    return m_IgnoreCase ? UpperCase(key) : key;
}

size_t HashSlots::BucketOf(TextView foldedKey) const {
    // The remainder of signed division: a negative hash is out of bounds unless nothing remains.
    const std::int32_t bucket = HashOfKey(foldedKey) % m_HashSize;
    if (bucket < 0) throw Error(ErrorNumber::Subscript);
    return static_cast<size_t>(bucket);
}

std::int32_t HashSlots::TakeFreeSlot() {
    if (m_FreeHead == 0) ExpandSlots(m_ChunkSize);
    const std::int32_t slot = m_FreeHead;
    m_FreeHead = At(slot).NextSlot;
    At(slot).NextSlot = 0;
    ++m_ItemCount;
    return slot;
}

void HashSlots::LinkSlot(std::int32_t slot, size_t bucket) {
    const std::int32_t tail = m_BucketTails[bucket];
    At(slot).Previous = tail;
    (tail != 0 ? At(tail).NextSlot : m_BucketHeads[bucket]) = slot;
    m_BucketTails[bucket] = slot;
}

size_t HashSlots::IndexPlace(TextView foldedKey, std::uint32_t hash) const {
    const size_t mask = m_Index.size() - 1;
    size_t place = hash & mask;
    for (; m_Index[place] != 0; place = (place + 1) & mask) {
        const Slot& slot = m_Slots[static_cast<size_t>(m_Index[place])];
        if (slot.IndexHash == hash && slot.Key == foldedKey) break;
    }
    return place;
}

void HashSlots::GrowIndex() {
    std::vector<std::int32_t> grown(m_Index.size() * 2);
    const size_t mask = grown.size() - 1;
    for (const std::int32_t slot : m_Index) {
        if (slot == 0) continue;
        size_t place = At(slot).IndexHash & mask;
        while (grown[place] != 0) place = (place + 1) & mask;
        grown[place] = slot;
    }
    m_Index.swap(grown);
}

void HashSlots::RemoveFromIndex(std::int32_t slot) {
    const size_t mask = m_Index.size() - 1;
    size_t hole = IndexPlace(KeyOf(slot), At(slot).IndexHash);
    m_Index[hole] = 0;
    // Whoever was pushed behind the hole and may stand in it moves up, so that no search ends at a gap too early.
    for (size_t place = (hole + 1) & mask; m_Index[place] != 0; place = (place + 1) & mask) {
        const size_t home = At(m_Index[place]).IndexHash & mask;
        if (((place - home) & mask) < ((place - hole) & mask)) continue;
        m_Index[hole] = m_Index[place];
        m_Index[place] = 0;
        hole = place;
    }
}

}  // namespace tb
