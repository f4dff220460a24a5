#include <algorithm>

#include "urlcheck/tray/frmSysTray.h"

namespace tb {

namespace {

constexpr const char* ElementName = "mnuSysTray";

// As TrackPopupMenu takes it: the right button chooses too.
constexpr std::uint32_t RightButtonFlag = 2;

}  // namespace

Menu& frmSysTray::AddElement(std::int32_t index) {
    Menu& item = Add<Menu>(ElementName, index, &mnuPopup);
    item.ClickEvent.Connect([this, index, &item] {
        // The handler may remove the item.
        const Text key = item.Key();
        MenuClick.Raise(index, key);
    });
    return item;
}

Menu* frmSysTray::MenuItem(std::int32_t index) const {
    if (index < 0 || (index == 0 && !m_FirstItemInUse)) return nullptr;
    return static_cast<Menu*>(Find(ElementName, index));
}

std::int32_t frmSysTray::NextIndex() const {
    std::int32_t highest = 0;
    for (const auto& control : Controls()) {
        if (control->Container() == &mnuPopup) highest = std::max(highest, control->Index());
    }
    return highest + 1;
}

std::int32_t frmSysTray::AddMenuItem(const Text& caption, const Text& key, bool isDefault) {
    std::int32_t index = 0;
    if (m_FirstItemInUse) {
        index = NextIndex();
        AddElement(index);
    }
    m_FirstItemInUse = true;
    Menu& item = *MenuItem(index);
    item.SetEnabled(true);
    item.SetVisible(true);
    item.SetKey(key);
    item.SetCaption(caption);
    if (isDefault) m_DefaultMenuIndex = index;
    return index;
}

std::int32_t frmSysTray::ChangeMenuItem(const Text& caption, const Text& key, bool isDefault) {
    const std::int32_t end = NextIndex();
    for (std::int32_t index = 0; index < end; ++index) {
        Menu* const item = MenuItem(index);
        if (item == nullptr || item->Key() != key) continue;
        item->SetCaption(caption);
        if (isDefault) m_DefaultMenuIndex = index;
        return index;
    }
    return -1;
}

void frmSysTray::EnableMenuItem(std::int32_t index, bool enabled) {
    if (Menu* const item = MenuItem(index)) item->SetEnabled(enabled);
}

void frmSysTray::RemoveMenuItem(std::int32_t index) {
    Menu* const item = MenuItem(index);
    if (item == nullptr) return;
    if (index == m_DefaultMenuIndex) m_DefaultMenuIndex = -1;
    if (index > 0) return Remove(*item);
    // The first element stays for the next item that is added.
    item->SetVisible(false);
    m_FirstItemInUse = false;
}

bool frmSysTray::ShowMenu() {
    const bool foreground = SetForeground();
    PopupMenu(mnuPopup, RightButtonFlag, MenuItem(m_DefaultMenuIndex));
    return foreground;
}

}  // namespace tb
