// Finds numbers by a hash. The numbers are positions of somebody's own things: only their owner can tell whether one is
// what is sought, so each search brings that question along.
#pragma once

#include <cstdint>
#include <vector>

#include "base/text.h"

namespace tb {

class HashIndex {
public:
    static std::uint32_t HashOf(TextView text);

    // The number under that hash for which `isSought(number)` holds, or 0.
    template <typename IsSought>
    std::uint32_t Find(std::uint32_t hash, IsSought isSought) const {
        if (m_Places.empty()) return 0;
        for (size_t place = hash & Mask(); m_Places[place].Number != 0; place = (place + 1) & Mask()) {
            if (m_Places[place].Hash == hash && isSought(m_Places[place].Number)) return m_Places[place].Number;
        }
        return 0;
    }
    // Makes room, so that as many more can be added without a failure.
    void Reserve(size_t more);
    // A number that is not held yet, and not 0.
    void Add(std::uint32_t hash, std::uint32_t number);
    // A number that is held under that hash.
    void Remove(std::uint32_t hash, std::uint32_t number);

private:
    struct Place {
        std::uint32_t Hash = 0;
        std::uint32_t Number = 0;  // 0 is a free place
    };

    size_t Mask() const { return m_Places.size() - 1; }
    static void Put(std::vector<Place>& places, const Place& added);

    std::vector<Place> m_Places;  // linear probing, a power of two, at least a quarter free
    size_t m_Count = 0;
};

}  // namespace tb
