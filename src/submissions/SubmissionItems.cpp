#include "submissions/SubmissionItems.h"

#include "base/errors.h"

namespace tb {

namespace {

void CountDown(std::unordered_map<Text, std::int32_t>& counts, const Text& text) {
    const auto found = counts.find(text);
    if (--found->second == 0) counts.erase(found);
}

}  // namespace

size_t SubmissionItems::Position(std::int32_t index) const {
    if (index < 1 || index > Count()) throw Error(ErrorNumber::Subscript);
    return static_cast<size_t>(index) - 1;
}

const ElementPtr& SubmissionItems::Item(std::int32_t index) const { return m_Items[Position(index)].Value; }

const ElementPtr& SubmissionItems::Find(const Text& key) const {
    const auto found = m_ByKey.find(key);
    if (found == m_ByKey.end()) throw Error(ErrorNumber::InvalidCall);
    return found->second;
}

void SubmissionItems::Index(const Text& key, const ElementPtr& element) {
    if (!m_ByKey.emplace(key, element).second) throw Error(ErrorNumber::DuplicateKey);
    ++m_Bodies[element->Body()];
    ++m_UniqueKeys[element->FindAttributeValue("UKEY")];
}

void SubmissionItems::AddFirst(const Text& key, ElementPtr element) {
    Index(key, element);
    m_Items.push_front({key, std::move(element)});
}

void SubmissionItems::AddLast(const Text& key, ElementPtr element) {
    Index(key, element);
    m_Items.push_back({key, std::move(element)});
}

void SubmissionItems::Remove(std::int32_t index) {
    const auto entry = m_Items.begin() + static_cast<std::ptrdiff_t>(Position(index));
    CountDown(m_Bodies, entry->Value->Body());
    CountDown(m_UniqueKeys, entry->Value->FindAttributeValue("UKEY"));
    m_ByKey.erase(entry->Key);
    m_Items.erase(entry);
}

}  // namespace tb
