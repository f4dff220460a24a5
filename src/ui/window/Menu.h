// An item of a menu, or the head of one: the items whose container it is are its rows.
#pragma once

#include "ui/window/Control.h"

namespace tb {

class Menu : public Control {
public:
    // Visible and enabled, without a caption.
    explicit Menu(const ControlPlace& place) : Control(place) {}

    static const ControlClass& StaticClass();
    const ControlClass& Class() const override { return StaticClass(); }

    // The user has chosen it.
    Event<> ClickEvent;

    // "&" stands before the letter that chooses the item; "-" alone is a separator.
    Text Caption() const { return m_Caption; }
    void SetCaption(const Text& caption) { m_Caption = caption; }
    bool IsSeparator() const { return m_Caption == "-"; }
    bool Visible() const { return m_Visible; }
    void SetVisible(bool visible) { m_Visible = visible; }
    bool Enabled() const { return m_Enabled; }
    void SetEnabled(bool enabled) { m_Enabled = enabled; }
    bool Checked() const { return m_Checked; }
    void SetChecked(bool checked) { m_Checked = checked; }
    // By which the program knows the item.
    Text Key() const { return m_Key; }
    void SetKey(const Text& key) { m_Key = key; }

    // Raises ClickEvent, whether or not the item can be chosen.
    void Click();

private:
    Text m_Caption;
    Text m_Key;
    bool m_Visible = true;
    bool m_Enabled = true;
    bool m_Checked = false;
};

}  // namespace tb
