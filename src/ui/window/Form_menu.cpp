#include "ui/window/Form.h"
#include "ui/window/Menu.h"

namespace tb {

namespace {

// The rows of a menu, and which item each id stands for: the first is 1.
class RowsOfMenu {
public:
    RowsOfMenu(const Form& form, const Menu* defaultItem) : m_Form(form), m_Default(defaultItem) {}

    std::vector<MenuRow> Below(const Control& head) {
        std::vector<MenuRow> rows;
        for (const auto& control : m_Form.Controls()) {
            const auto item = std::dynamic_pointer_cast<Menu>(control);
            if (!item || item->Container() != &head || !item->Visible()) continue;
            m_Items.push_back(item);
            MenuRow row;
            row.Id = static_cast<std::int32_t>(m_Items.size());
            row.Caption = item->Caption();
            row.IsSeparator = item->IsSeparator();
            row.IsEnabled = item->Enabled();
            row.IsChecked = item->Checked();
            row.IsDefault = item.get() == m_Default;
            row.Rows = Below(*item);
            rows.push_back(std::move(row));
        }
        return rows;
    }

    std::shared_ptr<Menu> Item(std::int32_t id) const {
        const bool known = id > 0 && static_cast<size_t>(id) <= m_Items.size();
        return known ? m_Items[static_cast<size_t>(id) - 1] : nullptr;
    }

private:
    const Form& m_Form;
    const Menu* m_Default;
    std::vector<std::shared_ptr<Menu>> m_Items;
};

}  // namespace

void Form::PopupMenu(Menu& menu, std::uint32_t flags, const Menu* defaultItem) {
    if (!m_Peer || m_MenuOpen) return;
    RowsOfMenu rows(*this, defaultItem);
    const std::vector<MenuRow> shown = rows.Below(menu);
    if (shown.empty()) return;
    // While the menu is open the form may be unloaded, and with it the peer goes.
    const auto alive = KeepAlive();
    m_MenuOpen = true;
    std::int32_t chosen = 0;
    try {
        chosen = m_Peer->PopupMenu(shown, flags);
    } catch (...) {
        m_MenuOpen = false;
        throw;
    }
    m_MenuOpen = false;
    if (const auto item = rows.Item(chosen)) item->Click();
}

}  // namespace tb
