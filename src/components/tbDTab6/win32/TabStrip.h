// A TabList in the system's tab control.
#pragma once

#include "components/faces/win32/ControlWindow.h"
#include "components/tbDTab6/TabList.h"
#include "components/tbDTab6/tbDTab6Face.h"

namespace tb {

class TabStrip : public ControlWindow {
public:
    TabStrip(HWND parent, const ControlBox& box, const tbDTab6Events& events);

    const TabList& Tabs() const { return m_Tabs; }
    std::int32_t Add(Tab tab);
    void Remove(std::int32_t index);
    void Select(std::int32_t index);
    // The place of a tab's panel, in the parent's client area.
    ControlBox Interior() const;

private:
    LRESULT Notified(NMHDR& what) noexcept override;
    void ShowSelection() { Ask(TCM_SETCURSEL, static_cast<WPARAM>(m_Tabs.Selected())); }

    TabList m_Tabs;
    const tbDTab6Events m_Events;
};

}  // namespace tb
