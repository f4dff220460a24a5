#include "components/tbDTab6/TabList.h"

#include <algorithm>
#include <utility>

#include "base/errors.h"

namespace tb {

// A negative index becomes one behind the end.
const Tab& TabList::Item(std::int32_t index) const { return At(m_Tabs, static_cast<std::size_t>(index)); }

std::int32_t TabList::Find(TextView key) const {
    const Text folded = LowerCase(key);
    const auto found = std::find_if(m_Tabs.begin(), m_Tabs.end(),
                                    [&](const Tab& tab) { return LowerCase(TextView(tab.Key)) == folded; });
    return found == m_Tabs.end() ? NoTab : static_cast<std::int32_t>(found - m_Tabs.begin());
}

std::int32_t TabList::Add(Tab tab) {
    if (!tab.Key.empty() && Find(tab.Key) != NoTab) throw Error(ErrorNumber::DuplicateKey);
    m_Tabs.push_back(std::move(tab));
    if (m_Selected == NoTab) m_Selected = 0;
    return Count() - 1;
}

void TabList::Remove(std::int32_t index) {
    Item(index);
    m_Tabs.erase(m_Tabs.begin() + index);
    if (index < m_Selected) --m_Selected;
    m_Selected = std::min(m_Selected, Count() - 1);
}

void TabList::Select(std::int32_t index) {
    Item(index);
    m_Selected = index;
}

}  // namespace tb
