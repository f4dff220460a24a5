#include "components/tbDTab6/win32/TabStrip.h"

#include <utility>

#include "platform/win32/Win32Text.h"

namespace tb {

TabStrip::TabStrip(HWND parent, const ControlBox& box, const tbDTab6Events& events)
    : ControlWindow({L"tbDTab6", WC_TABCONTROLW, WS_TABSTOP | WS_CLIPSIBLINGS, ICC_TAB_CLASSES}, parent, box),
      m_Events(events) {}

std::int32_t TabStrip::Add(Tab tab) {
    const std::int32_t index = m_Tabs.Add(std::move(tab));
    std::wstring caption = ToSystem(m_Tabs.Item(index).Caption);
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = caption.data();
    try {
        Order("TCM_INSERTITEM", Ask(TCM_INSERTITEMW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item)), -1);
    } catch (...) {
        m_Tabs.Remove(index);
        throw;
    }
    ShowSelection();
    return index;
}

void TabStrip::Remove(std::int32_t index) {
    m_Tabs.Remove(index);
    Ask(TCM_DELETEITEM, static_cast<WPARAM>(index));
    ShowSelection();
}

void TabStrip::Select(std::int32_t index) {
    m_Tabs.Select(index);
    ShowSelection();
}

ControlBox TabStrip::Interior() const {
    RECT inner{};
    GetClientRect(Original(), &inner);
    Ask(TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&inner));
    MapWindowPoints(Original(), GetParent(Window()), reinterpret_cast<POINT*>(&inner), 2);
    return {inner.left, inner.top, inner.right - inner.left, inner.bottom - inner.top};
}

LRESULT TabStrip::Notified(NMHDR& what) noexcept {
    if (what.code != TCN_SELCHANGE) return 0;
    const auto index = static_cast<std::int32_t>(Ask(TCM_GETCURSEL));
    if (index < 0 || index >= m_Tabs.Count() || index == m_Tabs.Selected()) return 0;
    m_Tabs.Select(index);
    if (m_Events.Selected != nullptr) m_Events.Selected(m_Events.Context, index);
    return 0;
}

}  // namespace tb
