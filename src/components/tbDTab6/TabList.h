// The tabs of a tab strip without their window: keys, captions, and which one is selected.
#pragma once

#include <cstdint>
#include <vector>

#include "base/text.h"

namespace tb {

struct Tab {
    // For the program; empty or unlike all others.
    Text Key;
    Text Caption;
};

// Indexes count from 0; NoTab is none. Error 9 for an index outside.
class TabList {
public:
    static constexpr std::int32_t NoTab = -1;

    std::int32_t Count() const { return static_cast<std::int32_t>(m_Tabs.size()); }
    const Tab& Item(std::int32_t index) const;
    // The tab with that key, by its letters without case, or NoTab.
    std::int32_t Find(TextView key) const;
    // Behind the others; the first tab of all becomes the selected one. Its index. Error 457 for a key that is there.
    std::int32_t Add(Tab tab);
    // The selection stays with its tab. When that one goes, the tab behind it is selected, or the last one.
    void Remove(std::int32_t index);
    void Select(std::int32_t index);
    // NoTab only while there are no tabs.
    std::int32_t Selected() const { return m_Selected; }

private:
    std::vector<Tab> m_Tabs;
    std::int32_t m_Selected = NoTab;
};

}  // namespace tb
