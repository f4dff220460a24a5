#include "sitedb/EntryLists.h"

#include "base/errors.h"

namespace tb {

void EntryLists::Reserve(size_t size) {
    const size_t left = (LargeBlockSize - m_Free % LargeBlockSize) % LargeBlockSize;
    if (HeadSize + size <= left) return;
    if (m_Blocks.size() == End >> BlockBits) throw Error(ErrorNumber::OutOfMemory);
    m_Blocks.push_back(MakeLargeBlock());
    m_Free = static_cast<Position>((m_Blocks.size() - 1) << BlockBits);
    // Position 0 stands for none.
    if (m_Free == 0) m_Free = 1;
}

EntryLists::Position EntryLists::Append(TextView bytes, Position first) {
    Reserve(bytes.size());
    const Position entry = m_Free;
    m_Free += static_cast<Position>(HeadSize + bytes.size());
    m_Used += HeadSize + bytes.size();
    std::memcpy(At(entry) + HeadSize, bytes.data(), bytes.size());
    Head head{entry, entry, static_cast<std::uint16_t>(bytes.size())};
    if (first != 0) {
        Head begin = HeadAt(first);
        head.Next = first;
        head.Previous = begin.Previous;
        begin.Previous = entry;
        Store(first, begin);
        Head last = HeadAt(head.Previous);
        last.Next = entry;
        Store(head.Previous, last);
    }
    Store(entry, head);
    return entry;
}

EntryLists::Position EntryLists::Remove(Position entry, Position first) {
    const Head removed = HeadAt(entry);
    const size_t size = HeadSize + removed.Length;
    m_Used -= size;
    m_Removed += size;
    if (removed.Next == entry) return 0;
    Head previous = HeadAt(removed.Previous);
    previous.Next = removed.Next;
    Store(removed.Previous, previous);
    Head next = HeadAt(removed.Next);
    next.Previous = removed.Previous;
    Store(removed.Next, next);
    return entry == first ? removed.Next : first;
}

void EntryLists::Clear() { *this = {}; }

}  // namespace tb
