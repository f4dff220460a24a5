#include "ui/window/Menu.h"

#include "ui/window/ControlTable.h"

namespace tb {

const ControlClass& Menu::StaticClass() {
    static const ControlClass table("Menu", &Control::StaticClass(),
                                    {
                                        Property<&Menu::Caption, &Menu::SetCaption>("Caption"),
                                        Property<&Menu::Visible, &Menu::SetVisible>("Visible"),
                                        Property<&Menu::Enabled, &Menu::SetEnabled>("Enabled"),
                                        Property<&Menu::Checked, &Menu::SetChecked>("Checked"),
                                        Property<&Menu::Key, &Menu::SetKey>("Key"),
                                    });
    return table;
}

void Menu::Click() {
    const auto alive = KeepAlive();
    ClickEvent.Raise();
}

}  // namespace tb
