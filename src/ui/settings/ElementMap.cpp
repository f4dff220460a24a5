#include "ui/settings/ElementMap.h"

#include "base/errors.h"

namespace tb {

void ElementMap::Add(TextView key, ElementPtr element) {
    const auto [place, added] = m_Places.try_emplace(UpperCase(key));
    if (!added) throw Error(ErrorNumber::DuplicateKey);
    try {
        place->second = m_Elements.insert(m_Elements.end(), std::move(element));
    } catch (...) {
        m_Places.erase(place);
        throw;
    }
}

ElementPtr ElementMap::Find(TextView key) const {
    const auto place = m_Places.find(UpperCase(key));
    return place == m_Places.end() ? nullptr : *place->second;
}

void ElementMap::Remove(TextView key) {
    const auto place = m_Places.find(UpperCase(key));
    if (place == m_Places.end()) return;
    m_Elements.erase(place->second);
    m_Places.erase(place);
}

void ElementMap::RemoveAll() {
    m_Places.clear();
    m_Elements.clear();
}

}  // namespace tb
