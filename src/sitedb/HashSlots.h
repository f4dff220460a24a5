// The slots of a HashTable: 1024 chains that run through one growing array, and an index beside each. The chains fix
// the order in which a table is walked and which slot is used again; an index finds a slot without walking. The keys
// themselves are their owner's.
#pragma once

#include <cstdint>
#include <vector>

#include "sitedb/HashIndex.h"

namespace tb {

// What a key hashes to: its chain, and its hash in the index beside that.
struct KeyHash {
    // Raises error 1001 for an empty key, error 9 for a key whose hash is negative and no multiple of the number of
    // buckets. The key is taken as it is compared.
    explicit KeyHash(TextView key);
    // The same with a hash of the owner's own for the index, which equal keys share. `hash` is that of HashOfKey.
    KeyHash(std::int32_t hash, std::uint32_t indexHash);

    std::int32_t Bucket;
    std::uint32_t IndexHash;
};

class HashSlots {
public:
    static constexpr std::int32_t HashSize = 1024;
    static constexpr std::int32_t ListSize = 2048;
    static constexpr std::int32_t ChunkSize = 1024;

    HashSlots() { RemoveAll(); }

    // The slot in use of that hash for which `isKey(slot)` holds, or 0.
    template <typename IsKey>
    std::int32_t Find(const KeyHash& key, IsKey isKey) const {
        return static_cast<std::int32_t>(m_Indices[static_cast<size_t>(key.Bucket)].Find(
            key.IndexHash, [&](std::uint32_t slot) { return isKey(static_cast<std::int32_t>(slot)); }));
    }
    // For those who prefetch what they will look at: a slot in use that may be that of the hashes (see KeyHash), and 0
    // for a key hash that has no bucket.
    std::int32_t FindAny(std::int32_t hash, std::uint32_t indexHash) const {
        if (hash < 0) return 0;
        return static_cast<std::int32_t>(IndexOf(hash).Find(indexHash, [](std::uint32_t) { return true; }));
    }
    // Prefetches where the search for it begins.
    void Prefetch(std::int32_t hash, std::uint32_t indexHash) const {
        if (hash >= 0) IndexOf(hash).Prefetch(indexHash);
    }
    // Prefetches a slot itself.
    void Prefetch(std::int32_t slot) const { PrefetchMemory(&m_Slots[static_cast<size_t>(slot)]); }
    // Takes a slot for a key that has none and puts it at the end of its chain.
    std::int32_t Create(const KeyHash& key);
    // Gives a key's slot back; it is the first to be used again.
    void Remove(std::int32_t slot, const KeyHash& key);
    // Empties the table and sets it up again.
    void RemoveAll();

    // A number that the owner keeps with a slot in use; 0 at first.
    std::uint32_t Number(std::int32_t slot) const { return m_Slots[static_cast<size_t>(slot)].Number; }
    void Number(std::int32_t slot, std::uint32_t number) { At(slot).Number = number; }

    std::int32_t ItemCount() const { return m_ItemCount; }
    // Slots allocated, with slot 0, which is never used.
    size_t SlotCount() const { return m_Slots.size(); }

    // Runs `visit(slot)` for the slots in use: buckets from 0 upward, within a bucket along the chain, which grows at
    // its tail.
    template <typename Visit>
    void Walk(Visit visit) const {
        for (std::int32_t slot : m_BucketHeads) {
            for (; slot != 0; slot = m_Slots[static_cast<size_t>(slot)].NextSlot) visit(slot);
        }
    }

    // The XOR of the key's bytes taken as little-endian 32-bit words, the last one filled up with zeros.
    static std::int32_t HashOfKey(TextView key);

private:
    struct Slot {
        std::int32_t NextSlot = 0;  // of the chain or of the free list; 0 ends it
        std::int32_t Previous = 0;  // of the chain
        std::uint32_t Number = 0;
    };

    const HashIndex& IndexOf(std::int32_t hash) const { return m_Indices[static_cast<size_t>(hash % HashSize)]; }
    void ExpandSlots(std::int32_t extra);
    std::int32_t TakeFreeSlot();
    void LinkSlot(std::int32_t slot, size_t bucket);
    Slot& At(std::int32_t slot) { return m_Slots[static_cast<size_t>(slot)]; }

    std::vector<std::int32_t> m_BucketHeads;
    std::vector<std::int32_t> m_BucketTails;
    std::vector<Slot> m_Slots;
    // One a chain: who fills a table in its walk order stays within little memory for long.
    std::vector<HashIndex> m_Indices;
    std::int32_t m_FreeHead = 0;
    std::int32_t m_ItemCount = 0;
};

}  // namespace tb
