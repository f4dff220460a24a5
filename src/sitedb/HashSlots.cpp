#include "sitedb/HashSlots.h"

#include "base/bytes.h"
#include "base/errors.h"

namespace tb {

namespace {

constexpr std::int32_t TableError = 1001;

std::int32_t HashOf(TextView key) {
    if (key.empty()) throw RuntimeError(TableError, "Invalid key");
    return HashSlots::HashOfKey(key);
}

}  // namespace

KeyHash::KeyHash(TextView key) : KeyHash(HashOf(key), HashIndex::HashOf(key)) {}

KeyHash::KeyHash(std::int32_t hash, std::uint32_t indexHash)
    : Bucket(hash % HashSlots::HashSize), IndexHash(indexHash) {
    // The remainder of signed division: a negative hash is out of bounds unless nothing remains.
    if (Bucket < 0) throw Error(ErrorNumber::Subscript);
}

std::int32_t HashSlots::Create(const KeyHash& key) {
    if (m_FreeHead == 0) ExpandSlots(ChunkSize);
    const auto bucket = static_cast<size_t>(key.Bucket);
    m_Indices[bucket].Add(key.IndexHash, static_cast<std::uint32_t>(m_FreeHead));
    const std::int32_t slot = TakeFreeSlot();
    LinkSlot(slot, bucket);
    return slot;
}

void HashSlots::Remove(std::int32_t slot, const KeyHash& key) {
    const auto bucket = static_cast<size_t>(key.Bucket);
    m_Indices[bucket].Remove(key.IndexHash, static_cast<std::uint32_t>(slot));
    Slot& removed = At(slot);
    (removed.Previous != 0 ? At(removed.Previous).NextSlot : m_BucketHeads[bucket]) = removed.NextSlot;
    (removed.NextSlot != 0 ? At(removed.NextSlot).Previous : m_BucketTails[bucket]) = removed.Previous;
    removed.NextSlot = m_FreeHead;
    m_FreeHead = slot;
    --m_ItemCount;
}

void HashSlots::RemoveAll() {
    m_ItemCount = 0;
    m_FreeHead = 0;
    m_BucketHeads.assign(HashSize, 0);
    m_BucketTails.assign(HashSize, 0);
    std::vector<Slot>(1).swap(m_Slots);
    std::vector<HashIndex>(HashSize).swap(m_Indices);
    ExpandSlots(ListSize);
}

std::int32_t HashSlots::HashOfKey(TextView key) {
    std::uint64_t hash = 0;
    for (size_t start = 0; start < key.size(); start += 4) hash ^= LittleEndian(key.substr(start, 4));
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(hash));
}

void HashSlots::ExpandSlots(std::int32_t extra) {
    const auto first = static_cast<std::int32_t>(m_Slots.size());
    m_Slots.resize(m_Slots.size() + static_cast<size_t>(extra));
    for (std::int32_t slot = first; slot < first + extra; ++slot) At(slot).NextSlot = slot + 1;
    m_Slots.back().NextSlot = m_FreeHead;
    m_FreeHead = first;
}

std::int32_t HashSlots::TakeFreeSlot() {
    const std::int32_t slot = m_FreeHead;
    m_FreeHead = At(slot).NextSlot;
    At(slot) = {};
    ++m_ItemCount;
    return slot;
}

void HashSlots::LinkSlot(std::int32_t slot, size_t bucket) {
    const std::int32_t tail = m_BucketTails[bucket];
    At(slot).Previous = tail;
    (tail != 0 ? At(tail).NextSlot : m_BucketHeads[bucket]) = slot;
    m_BucketTails[bucket] = slot;
}

}  // namespace tb
