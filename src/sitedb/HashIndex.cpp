#include "sitedb/HashIndex.h"

#include <algorithm>
#include <functional>

namespace tb {

namespace {

constexpr size_t FirstSize = 4;

}  // namespace

std::uint32_t HashIndex::HashOf(TextView text) {
    const auto hash = static_cast<std::uint64_t>(std::hash<TextView>()(text));
    return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

void HashIndex::Reserve(size_t more) {
    size_t size = std::max(m_Cells.size(), FirstSize);
    while ((m_Count + more) * 4 > size * 3) size += size / 2;
    if (size == m_Cells.size()) return;
    std::vector<Cell> grown(size);
    for (const Cell& held : m_Cells) {
        if (held.Number != 0) Put(grown, held);
    }
    m_Cells.swap(grown);
}

void HashIndex::Add(std::uint32_t hash, std::uint32_t number) {
    Reserve(1);
    Put(m_Cells, {hash, number});
    ++m_Count;
}

void HashIndex::Remove(std::uint32_t hash, std::uint32_t number) {
    size_t hole = Home(hash);
    while (m_Cells[hole].Number != number) hole = Behind(hole);
    m_Cells[hole] = {};
    --m_Count;
    // Whoever was pushed behind the hole and may stand in it moves up, so that no search ends at a gap too early.
    for (size_t index = Behind(hole); m_Cells[index].Number != 0; index = Behind(index)) {
        if (Distance(Home(m_Cells[index].Hash), index) < Distance(hole, index)) continue;
        m_Cells[hole] = m_Cells[index];
        m_Cells[index] = {};
        hole = index;
    }
}

void HashIndex::Put(std::vector<Cell>& cells, const Cell& added) {
    size_t index = HomeOf(added.Hash, cells.size());
    while (cells[index].Number != 0) index = index + 1 < cells.size() ? index + 1 : 0;
    cells[index] = added;
}

}  // namespace tb
