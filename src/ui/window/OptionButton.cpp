#include "ui/window/OptionButton.h"

#include <algorithm>

#include "ui/window/ControlHost.h"
#include "ui/window/ControlTable.h"

namespace tb {

namespace {

constexpr ControlColors ButtonColors{SystemColors::ButtonFace, SystemColors::ButtonText};
constexpr TwipSize FirstSize{1215, 285};

}  // namespace

OptionButton::OptionButton(const ControlPlace& place) : VisualControl(place, ButtonColors) {
    Move(0, 0, FirstSize.Width, FirstSize.Height);
}

const ControlClass& OptionButton::StaticClass() {
    static const ControlClass table("OptionButton", &VisualControl::StaticClass(),
                                    {
                                        Property<&OptionButton::Caption, &OptionButton::SetCaption>("Caption"),
                                        Property<&OptionButton::Selected, &OptionButton::SetSelected>("Value"),
                                    });
    return table;
}

void OptionButton::SetCaption(const Text& caption) {
    m_Caption = caption;
    if (m_Peer) m_Peer->SetText(caption);
}

std::vector<OptionButton*> OptionButton::Group() {
    std::vector<OptionButton*> group;
    for (const auto& control : Host()->Controls()) {
        auto* const button = dynamic_cast<OptionButton*>(control.get());
        if (button != nullptr && button->Container() == Container()) group.push_back(button);
    }
    return group;
}

void OptionButton::SetSelected(bool selected) {
    if (selected == m_Selected) return;
    const auto alive = KeepAlive();
    if (selected) {
        for (OptionButton* const other : Group()) {
            if (other != this) other->Mark(false);
        }
    }
    Mark(selected);
    ShareTabStop();
    if (selected) ClickEvent.Raise();
}

void OptionButton::Mark(bool selected) {
    m_Selected = selected;
    if (m_Peer) m_Peer->SetSelected(selected);
}

// The Tab key goes to the selected one, or to the first.
void OptionButton::ShareTabStop() {
    const std::vector<OptionButton*> group = Group();
    auto stop = std::find_if(group.begin(), group.end(), [](const OptionButton* button) { return button->m_Selected; });
    if (stop == group.end()) stop = group.begin();
    for (OptionButton* const button : group) {
        if (button->m_Peer) button->m_Peer->SetTabStop(button == *stop);
    }
}

void OptionButton::MakePeer(FormPeer& form) {
    m_Peer = form.MakeOptionButton(Around(), *this);
    DressPeer(*m_Peer);
    m_Peer->SetText(m_Caption);
    m_Peer->SetSelected(m_Selected);
    m_Peer->SetVisible(Visible());
    ShareTabStop();
}

}  // namespace tb
