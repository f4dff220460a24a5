#include "shell/helpers/ComponentList.h"

#include <algorithm>

#include "base/errors.h"

namespace tb {

void ComponentList::Add(ComponentRecord record) {
    if (Find(record.FILENAME) != nullptr) throw Error(ErrorNumber::DuplicateKey);
    m_Records.push_back(std::move(record));
}

void ComponentList::Replace(ComponentRecord record) {
    const ComponentRecord& old = Item(record.FILENAME);
    At(m_Records, static_cast<size_t>(&old - m_Records.data())) = std::move(record);
}

const ComponentRecord& ComponentList::Item(TextView fileName) const {
    const ComponentRecord* const found = Find(fileName);
    if (found == nullptr) throw Error(ErrorNumber::InvalidCall);
    return *found;
}

const ComponentRecord* ComponentList::Find(TextView fileName) const {
    const Text folded = UpperCase(fileName);
    const auto found = std::find_if(m_Records.begin(), m_Records.end(), [&](const ComponentRecord& record) {
        return UpperCase(record.FILENAME) == folded;
    });
    return found == m_Records.end() ? nullptr : &*found;
}

}  // namespace tb
