// One of several buttons of which the user chooses one: those that the same container holds.
#pragma once

#include "ui/window/Control.h"

namespace tb {

class OptionButton : public VisualControl, private ButtonEvents {
public:
    // Not selected.
    explicit OptionButton(const ControlPlace& place);

    static const ControlClass& StaticClass();
    const ControlClass& Class() const override { return StaticClass(); }
    std::shared_ptr<void> KeepAlive() override { return Control::KeepAlive(); }

    // It has been selected, by whomever.
    Event<> ClickEvent;

    // "&" stands before the letter that selects it together with Alt.
    Text Caption() const { return m_Caption; }
    void SetCaption(const Text& caption);
    // By name this is "Value". Selecting one takes the selection from the others of its container.
    bool Selected() const { return m_Selected; }
    void SetSelected(bool selected);

    void MakePeer(FormPeer& form) override;
    void DropPeer() noexcept override { m_Peer.reset(); }

protected:
    WindowPeer* Peer() const override { return m_Peer.get(); }

private:
    void Clicked() override { SetSelected(true); }
    std::vector<OptionButton*> Group();
    void Mark(bool selected);
    void ShareTabStop();

    Text m_Caption;
    bool m_Selected = false;
    std::unique_ptr<OptionButtonPeer> m_Peer;
};

}  // namespace tb
