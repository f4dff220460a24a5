#include "sitedb/HashSlots.h"

#include "base/errors.h"

namespace tb {

namespace {

constexpr std::int32_t TableError = 1001;

std::int32_t HashOf(TextView key) {
    if (key.empty()) throw RuntimeError(TableError, "Invalid key");
    return HashSlots::HashOfKey(key);
}

}  // namespace

SlotPlace::SlotPlace(TextView key) : SlotPlace(HashOf(key), HashIndex::HashOf(key)) {}

SlotPlace::SlotPlace(std::int32_t hash, std::uint32_t indexHash)
    : Bucket(hash % HashSlots::HashSize), IndexHash(indexHash) {
    // The remainder of signed division: a negative hash is out of bounds unless nothing remains.
    if (Bucket < 0) throw Error(ErrorNumber::Subscript);
}

std::int32_t HashSlots::Create(const SlotPlace& place) {
    if (m_FreeHead == 0) ExpandSlots(ChunkSize);
    const auto bucket = static_cast<size_t>(place.Bucket);
    m_Indices[bucket].Add(place.IndexHash, static_cast<std::uint32_t>(m_FreeHead));
    const std::int32_t slot = TakeFreeSlot();
    LinkSlot(slot, bucket);
    return slot;
}

void HashSlots::Remove(std::int32_t slot, const SlotPlace& place) {
    const auto bucket = static_cast<size_t>(place.Bucket);
    m_Indices[bucket].Remove(place.IndexHash, static_cast<std::uint32_t>(slot));
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
    std::uint32_t hash = 0;
    const auto byteAt = [&](size_t index) { return std::uint32_t{static_cast<std::uint8_t>(key[index])}; };
    size_t index = 0;
    for (; index + 4 <= key.size(); index += 4) {
        hash ^= byteAt(index) | byteAt(index + 1) << 8 | byteAt(index + 2) << 16 | byteAt(index + 3) << 24;
    }
    for (; index < key.size(); ++index) hash ^= byteAt(index) << (index % 4 * 8);
    return static_cast<std::int32_t>(hash);
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
