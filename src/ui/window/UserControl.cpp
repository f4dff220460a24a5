#include "ui/window/UserControl.h"

#include "ui/window/ControlTable.h"

namespace tb {

namespace {

constexpr ControlColors BoxColors{SystemColors::ButtonFace, SystemColors::ButtonText};
constexpr TwipSize FirstSize{1215, 1215};

}  // namespace

UserControl::UserControl(const ControlPlace& place) : DrawnControl(place, BoxColors) {
    Move(0, 0, FirstSize.Width, FirstSize.Height);
}

const ControlClass& UserControl::StaticClass() {
    static const ControlClass table("UserControl", &DrawnControl::StaticClass(), {});
    return table;
}

void UserControl::MakePeer(FormPeer& form) {
    m_Peer = form.MakeBox(Around(), Pointer(), false);
    DressDrawnPeer(*m_Peer);
    m_PeerOfForm = &form;
    MakePeersOfControls(form);
    m_Peer->SetVisible(Visible());
}

void UserControl::DropPeer() noexcept {
    m_PeerOfForm = nullptr;
    DropPeersOfControls();
    m_Peer.reset();
}

}  // namespace tb
