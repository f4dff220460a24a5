#include "ui/settings/ElementMap.h"

#include "base/errors.h"

namespace tb {

void ElementMap::Add(TextView key, ElementPtr element) {
    const auto [entry, added] = m_ByKey.try_emplace(UpperCase(key));
    if (!added) throw Error(ErrorNumber::DuplicateKey);
    try {
        entry->second = m_Elements.insert(m_Elements.end(), std::move(element));
    } catch (...) {
        m_ByKey.erase(entry);
        throw;
    }
}

ElementPtr ElementMap::Find(TextView key) const {
    const auto found = m_ByKey.find(UpperCase(key));
    return found == m_ByKey.end() ? nullptr : *found->second;
}

void ElementMap::Remove(TextView key) {
    const auto found = m_ByKey.find(UpperCase(key));
    if (found == m_ByKey.end()) return;
    m_Elements.erase(found->second);
    m_ByKey.erase(found);
}

void ElementMap::RemoveAll() {
    m_ByKey.clear();
    m_Elements.clear();
}

}  // namespace tb
