// Text that the user only reads.
#pragma once

#include "ui/window/Control.h"

namespace tb {

class Label : public VisualControl {
public:
    explicit Label(const ControlPlace& place);

    static const ControlClass& StaticClass();
    const ControlClass& Class() const override { return StaticClass(); }

    // Broken into lines at blanks. A window shows the first 1000 characters, up to the first NUL.
    Text Caption() const { return m_Caption; }
    void SetCaption(const Text& caption);
    // True at first: "&" stands before the letter that moves the focus behind the label, together with Alt. Error 382
    // once the label has a window.
    bool UseMnemonic() const { return m_UseMnemonic; }
    void SetUseMnemonic(bool useMnemonic);

    void MakePeer(FormPeer& form) override;
    void DropPeer() noexcept override { m_Peer.reset(); }

protected:
    WindowPeer* Peer() const override { return m_Peer.get(); }

private:
    Text m_Caption;
    bool m_UseMnemonic = true;
    std::unique_ptr<WindowPeer> m_Peer;
};

}  // namespace tb
