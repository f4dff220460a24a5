// The keys of a HashTable: 1024 chains that run through one growing array of slots, and an index beside them. The
// chains fix the order in which a table is walked and which slot is used again; the index finds a key without walking.
#pragma once

#include <cstdint>
#include <vector>

#include "base/text.h"

namespace tb {

class HashSlots {
public:
    HashSlots() { Resize(1024, 2048, 1024); }

    bool IgnoreCase() const { return m_IgnoreCase; }
    // Error 1001 when there are keys.
    void IgnoreCase(bool ignore);

    // The slot of a key, or 0. Error 1001 for an empty key, error 9 for a key whose hash is negative and no multiple of
    // the number of buckets.
    std::int32_t Find(const Text& key) const;
    // The same, making the slot when there is none; `created` tells.
    std::int32_t FindOrCreate(const Text& key, bool& created);
    // Takes the key out and returns its slot, which is the first to be used again. Error 5 when the key is absent.
    std::int32_t Remove(const Text& key);
    // Empties the table and sets it up again; whether case counts stays.
    void RemoveAll() { Resize(m_HashSize, m_ListSize, m_ChunkSize); }

    std::int32_t ItemCount() const { return m_ItemCount; }
    // Slots allocated, with slot 0, which is never used.
    size_t SlotCount() const { return m_Slots.size(); }
    // The slots in use: buckets from 0 upward, within a bucket along the chain, which grows at its tail.
    std::vector<std::int32_t> Walk() const;
    const Text& KeyOf(std::int32_t slot) const { return m_Slots[static_cast<size_t>(slot)].Key; }

    // The XOR of the key's bytes taken as little-endian 32-bit words, the last one filled up with zeros.
    static std::int32_t HashOfKey(TextView key);

private:
    struct Slot {
        Text Key;
        std::int32_t NextSlot = 0;  // of the chain or of the free list; 0 ends it
        std::int32_t Previous = 0;  // of the chain
        std::uint32_t IndexHash = 0;
    };

    void Resize(std::int32_t hashSize, std::int32_t listSize, std::int32_t chunkSize);
    void ExpandSlots(std::int32_t extra);
    Text Folded(const Text& key) const;
    size_t BucketOf(TextView foldedKey) const;
    std::int32_t TakeFreeSlot();
    void LinkSlot(std::int32_t slot, size_t bucket);

    // The place of a key in the index, or the empty place where it would go.
    size_t IndexPlace(TextView foldedKey, std::uint32_t hash) const;
    void GrowIndex();
    void RemoveFromIndex(std::int32_t slot);

    Slot& At(std::int32_t slot) { return m_Slots[static_cast<size_t>(slot)]; }

    std::vector<std::int32_t> m_BucketHeads;
    std::vector<std::int32_t> m_BucketTails;
    std::vector<Slot> m_Slots;
    std::vector<std::int32_t> m_Index;  // slots by IndexHash, linear probing, a power of two at most half full
    std::int32_t m_FreeHead = 0;
    std::int32_t m_HashSize = 0;
    std::int32_t m_ListSize = 0;
    std::int32_t m_ChunkSize = 0;
    std::int32_t m_ItemCount = 0;
    bool m_IgnoreCase = false;
};

}  // namespace tb
