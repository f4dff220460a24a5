// Finds numbers by a hash. The numbers are positions of somebody's own things: only their owner can tell whether one is
// what is sought, so each search brings that question along.
#pragma once

#include <cstdint>
#include <vector>

#include "base/text.h"
#include "sitedb/Prefetch.h"

namespace tb {

class HashIndex {
public:
    static std::uint32_t HashOf(TextView text);

    // The number under that hash for which `isSought(number)` holds, or 0.
    template <typename IsSought>
    std::uint32_t Find(std::uint32_t hash, IsSought isSought) const {
        if (m_Cells.empty()) return 0;
        for (size_t index = Home(hash); m_Cells[index].Number != 0; index = Behind(index)) {
            if (m_Cells[index].Hash == hash && isSought(m_Cells[index].Number)) return m_Cells[index].Number;
        }
        return 0;
    }
    // Runs `visit(number)` for the numbers under that hash.
    template <typename Visit>
    void FindAll(std::uint32_t hash, Visit visit) const {
        Find(hash, [&](std::uint32_t number) {
            visit(number);
            return false;
        });
    }
    // Prefetches the cell where a search for that hash begins.
    void Prefetch(std::uint32_t hash) const {
        if (!m_Cells.empty()) PrefetchMemory(&m_Cells[Home(hash)]);
    }
    // Makes room, so that as many more can be added without a failure.
    void Reserve(size_t more);
    // A number that is not held yet, and not 0.
    void Add(std::uint32_t hash, std::uint32_t number);
    // A number that is held under that hash.
    void Remove(std::uint32_t hash, std::uint32_t number);

private:
    struct Cell {
        std::uint32_t Hash = 0;
        std::uint32_t Number = 0;  // 0 is a free cell
    };

    // Any size goes, so that it can grow by less than doubling: cells are half of what the list costs beside its
    // bytes.
    static size_t HomeOf(std::uint32_t hash, size_t size) {
        return static_cast<size_t>(std::uint64_t{hash} * size >> 32);
    }
    size_t Home(std::uint32_t hash) const { return HomeOf(hash, m_Cells.size()); }
    size_t Behind(size_t index) const { return index + 1 < m_Cells.size() ? index + 1 : 0; }
    // Steps from one cell on to another.
    size_t Distance(size_t from, size_t to) const { return to >= from ? to - from : to + m_Cells.size() - from; }
    static void Put(std::vector<Cell>& cells, const Cell& added);

    std::vector<Cell> m_Cells;  // linear probing, at least a quarter free
    size_t m_Count = 0;
};

}  // namespace tb
