// The values of one section: elements in the order of adding, found by a key without regard to case.
#pragma once

#include <list>
#include <unordered_map>

#include "components/tbXML/Element.h"

namespace tb {

class ElementMap {
public:
    // Keeps `element` at the end; error 457 for a key that is there already.
    void Add(TextView key, ElementPtr element);
    // Null when there is none.
    ElementPtr Find(TextView key) const;
    // Nothing happens when there is none.
    void Remove(TextView key);
    void RemoveAll();

    std::list<ElementPtr>::const_iterator begin() const { return m_Elements.begin(); }
    std::list<ElementPtr>::const_iterator end() const { return m_Elements.end(); }

private:
    std::list<ElementPtr> m_Elements;
    // By the key in upper case.
    std::unordered_map<Text, std::list<ElementPtr>::iterator> m_ByKey;
};

}  // namespace tb
