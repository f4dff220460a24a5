// A button that does something when it is pressed.
#pragma once

#include "ui/window/Control.h"

namespace tb {

class CommandButton : public VisualControl, private ButtonEvents {
public:
    explicit CommandButton(const ControlPlace& place);

    static const ControlClass& StaticClass();
    const ControlClass& Class() const override { return StaticClass(); }
    std::shared_ptr<void> KeepAlive() override { return Control::KeepAlive(); }

    Event<> ClickEvent;

    // "&" stands before the letter that presses it together with Alt.
    Text Caption() const { return m_Caption; }
    void SetCaption(const Text& caption);
    // Enter presses it wherever the focus is, but on another button; one of a form at most.
    bool Default() const { return m_Default; }
    void SetDefault(bool isDefault);
    // Escape presses it; one of a form at most.
    bool Cancel() const { return m_Cancel; }
    void SetCancel(bool isCancel);

    // Raises ClickEvent, whether or not the button can be pressed.
    void Click();

    void MakePeer(FormPeer& form) override;
    void DropPeer() noexcept override { m_Peer.reset(); }

protected:
    WindowPeer* Peer() const override { return m_Peer.get(); }

private:
    void Clicked() override { Click(); }

    Text m_Caption;
    bool m_Default = false;
    bool m_Cancel = false;
    std::unique_ptr<CommandButtonPeer> m_Peer;
};

}  // namespace tb
