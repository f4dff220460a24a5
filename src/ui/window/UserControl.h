// A control that is made of others. They have names of their own: two such controls of a form may each have a "cmdOK".
#pragma once

#include "ui/window/ControlHost.h"
#include "ui/window/DrawnControl.h"

namespace tb {

class UserControl : public DrawnControl, public ControlHost {
public:
    explicit UserControl(const ControlPlace& place);
    // Its controls go first.
    ~UserControl() override { DropPeer(); }

    static const ControlClass& StaticClass();
    const ControlClass& Class() const override { return StaticClass(); }

    void MakePeer(FormPeer& form) override;
    void DropPeer() noexcept override;

protected:
    DrawnPeer* Drawn() const override { return m_Peer.get(); }
    BoxPeer* Inside() const override { return m_Peer.get(); }
    Control& HostControl() override { return *this; }
    FormPeer* PeerOfForm() const override { return m_PeerOfForm; }

private:
    std::unique_ptr<BoxPeer> m_Peer;
    // While there is a peer.
    FormPeer* m_PeerOfForm = nullptr;
};

}  // namespace tb
