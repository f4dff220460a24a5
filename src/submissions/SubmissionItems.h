// The submissions in memory: elements in order, each under a key of its own, with indexes for the two questions by
// which repeats are recognised.
#pragma once

#include <cstdint>
#include <deque>
#include <unordered_map>

#include "components/tbXML/Element.h"

namespace tb {

// Bodies and attributes "UKEY" of held elements must not be changed.
class SubmissionItems {
public:
    std::int32_t Count() const { return static_cast<std::int32_t>(m_Items.size()); }
    // By position from 1; error 9 outside. Valid until the list changes.
    const ElementPtr& Item(std::int32_t index) const;
    // By key, case kept; error 5 when there is none.
    const ElementPtr& Find(const Text& key) const;

    // Error 457 for a key that is there already.
    void AddFirst(const Text& key, ElementPtr element);
    void AddLast(const Text& key, ElementPtr element);
    // Error 9 outside.
    void Remove(std::int32_t index);

    // Whether some element has exactly this body, or this attribute "UKEY". The cost does not grow with the list.
    bool HasBody(const Text& body) const { return m_Bodies.count(body) > 0; }
    bool HasUniqueKey(const Text& uniqueKey) const { return m_UniqueKeys.count(uniqueKey) > 0; }

private:
    struct Entry {
        Text Key;
        ElementPtr Value;
    };
    using Counts = std::unordered_map<Text, std::int32_t>;

    size_t Position(std::int32_t index) const;
    void Index(const Text& key, const ElementPtr& element);

    std::deque<Entry> m_Items;
    std::unordered_map<Text, ElementPtr> m_ByKey;
    Counts m_Bodies;
    Counts m_UniqueKeys;
};

}  // namespace tb
