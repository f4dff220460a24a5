// Lists of scrambled entries, packed into large blocks of memory: beside its bytes an entry costs ten more.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <vector>

#include "base/text.h"
#include "platform/LargeBlock.h"
#include "sitedb/Prefetch.h"

namespace tb {

// A list is known by the position of its first entry, an empty one by 0. Positions and bytes stay where they are until
// Clear; the space of removed entries is not used again before.
class EntryLists {
public:
    using Position = std::uint32_t;
    // Positions lie below this: 2 GB of entries.
    static constexpr Position End = 1U << 31;
    // Positions of two entries are at least so far apart.
    static constexpr Position LeastDistance = 8;

    // Makes sure that an entry of that size can be appended. Raises error 7 when there is no room.
    void Reserve(size_t size);
    // Appends an entry of 1 to 32767 bytes to a list and tells its position. Beginning a list, `first` is 0. Raises
    // error 7 when there is no room.
    Position Append(TextView bytes, Position first);
    // Takes an entry out of its list and tells where the list begins then.
    Position Remove(Position entry, Position first);
    void Clear();

    TextView Bytes(Position entry) const { return {At(entry) + HeadSize, HeadAt(entry).Length}; }
    // The entry behind this one, 0 behind the last.
    Position Next(Position entry, Position first) const {
        const Position next = HeadAt(entry).Next;
        return next == first ? 0 : next;
    }

    // Runs `visit(bytes)` for the entries of a list.
    template <typename Visit>
    void Walk(Position first, Visit visit) const {
        for (Position entry = first; entry != 0;) {
            const Head head = HeadAt(entry);
            visit(TextView(At(entry) + HeadSize, head.Length));
            entry = head.Next == first ? 0 : head.Next;
        }
    }

    // Prefetches an entry, and what lies behind it: of most lists that is all.
    void Prefetch(Position entry) const {
        const char* const at = At(entry);
        for (size_t line = 0; line < 3; ++line) PrefetchMemory(at + 64 * line);
    }

    // Bytes in use and bytes of removed entries, both with what an entry costs beside its own.
    std::uint64_t Used() const { return m_Used; }
    std::uint64_t Removed() const { return m_Removed; }

private:
    // Stands before the bytes of each entry. The last entry's next is the first one and the other way round.
    struct Head {
        Position Next;
        Position Previous;
        std::uint16_t Length;
    };
    static constexpr size_t HeadSize = 10;
    static_assert(LeastDistance <= HeadSize);
    static constexpr int BlockBits = std::bit_width(LargeBlockSize) - 1;

    Head HeadAt(Position entry) const {
        Head head;
        std::memcpy(&head, At(entry), HeadSize);
        return head;
    }
    void Store(Position entry, const Head& head) { std::memcpy(At(entry), &head, HeadSize); }
    char* At(Position entry) const { return m_Blocks[entry >> BlockBits].get() + (entry & ((1U << BlockBits) - 1)); }

    std::vector<LargeBlock> m_Blocks;
    Position m_Free = 0;  // where the next entry goes if the block has room
    std::uint64_t m_Used = 0;
    std::uint64_t m_Removed = 0;
};

}  // namespace tb
