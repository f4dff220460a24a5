// A set of entries of the list, by their positions: a bit for every eight bytes of entries, no two of which begin in
// the same eight.
#pragma once

#include "sitedb/EntryLists.h"

namespace tb {

class EntrySet {
public:
    // True when it was not in there.
    bool Add(EntryLists::Position entry) {
        const size_t bit = entry / EntryLists::LeastDistance;
        if (bit >= m_Bits.size()) m_Bits.resize(bit + 1);
        if (m_Bits[bit]) return false;
        m_Bits[bit] = true;
        return true;
    }
    // True when it was in there.
    bool Remove(EntryLists::Position entry) {
        const size_t bit = entry / EntryLists::LeastDistance;
        if (bit >= m_Bits.size() || !m_Bits[bit]) return false;
        m_Bits[bit] = false;
        return true;
    }

private:
    std::vector<bool> m_Bits;
};

}  // namespace tb
