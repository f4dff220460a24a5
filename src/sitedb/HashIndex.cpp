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
    size_t size = std::max(m_Places.size(), FirstSize);
    while ((m_Count + more) * 4 > size * 3) size += size / 2;
    if (size == m_Places.size()) return;
    std::vector<Place> grown(size);
    for (const Place& held : m_Places) {
        if (held.Number != 0) Put(grown, held);
    }
    m_Places.swap(grown);
}

void HashIndex::Add(std::uint32_t hash, std::uint32_t number) {
    Reserve(1);
    Put(m_Places, {hash, number});
    ++m_Count;
}

void HashIndex::Remove(std::uint32_t hash, std::uint32_t number) {
    size_t hole = Home(hash);
    while (m_Places[hole].Number != number) hole = Behind(hole);
    m_Places[hole] = {};
    --m_Count;
    // Whoever was pushed behind the hole and may stand in it moves up, so that no search ends at a gap too early.
    for (size_t place = Behind(hole); m_Places[place].Number != 0; place = Behind(place)) {
        if (Distance(Home(m_Places[place].Hash), place) < Distance(hole, place)) continue;
        m_Places[hole] = m_Places[place];
        m_Places[place] = {};
        hole = place;
    }
}

void HashIndex::Put(std::vector<Place>& places, const Place& added) {
    size_t place = HomeOf(added.Hash, places.size());
    while (places[place].Number != 0) place = place + 1 < places.size() ? place + 1 : 0;
    places[place] = added;
}

}  // namespace tb
