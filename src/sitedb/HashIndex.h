// Finds numbers by a hash. The numbers are positions of somebody's own things: only their owner can tell whether one is
// what is sought, so each search brings that question along.
#pragma once

#include <cstdint>
#include <vector>

#include "base/text.h"
#include "sitedb/AskFor.h"

namespace tb {

class HashIndex {
public:
    static std::uint32_t HashOf(TextView text);

    // The number under that hash for which `isSought(number)` holds, or 0.
    template <typename IsSought>
    std::uint32_t Find(std::uint32_t hash, IsSought isSought) const {
        if (m_Places.empty()) return 0;
        for (size_t place = Home(hash); m_Places[place].Number != 0; place = Behind(place)) {
            if (m_Places[place].Hash == hash && isSought(m_Places[place].Number)) return m_Places[place].Number;
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
    // Lets the machine fetch the place where a search for that hash begins.
    void AskFor(std::uint32_t hash) const {
        if (!m_Places.empty()) AskForMemory(&m_Places[Home(hash)]);
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

    // Any size goes, so that it can grow by less than doubling: places are half of what the list costs beside its
    // bytes.
    static size_t HomeOf(std::uint32_t hash, size_t size) {
        return static_cast<size_t>(std::uint64_t{hash} * size >> 32);
    }
    size_t Home(std::uint32_t hash) const { return HomeOf(hash, m_Places.size()); }
    size_t Behind(size_t place) const { return place + 1 < m_Places.size() ? place + 1 : 0; }
    // Steps from one place on to another.
    size_t Distance(size_t from, size_t to) const { return to >= from ? to - from : to + m_Places.size() - from; }
    static void Put(std::vector<Place>& places, const Place& added);

    std::vector<Place> m_Places;  // linear probing, at least a quarter free
    size_t m_Count = 0;
};

}  // namespace tb
