#include "ui/window/DrawnControl.h"

#include "ui/window/ControlTable.h"

namespace tb {

const ControlClass& DrawnControl::StaticClass() {
    static const ControlClass table("DrawnControl", &VisualControl::StaticClass(),
                                    {
                                        Property<&DrawnControl::AutoRedraw, &DrawnControl::SetAutoRedraw>("AutoRedraw"),
                                        Property<&DrawnControl::GetPicture, &DrawnControl::SetPicture>("Picture"),
                                    });
    return table;
}

Surface* DrawnControl::Surface() const {
    DrawnPeer* const peer = Drawn();
    return peer != nullptr ? &peer->Surface() : nullptr;
}

void DrawnControl::SetPicture(const PictureRef& picture) {
    m_Picture = picture;
    if (DrawnPeer* const peer = Drawn()) peer->SetPicture(picture);
}

void DrawnControl::SetCapture(bool capture) {
    if (DrawnPeer* const peer = Drawn()) peer->SetCapture(capture);
}

void DrawnControl::DressDrawnPeer(DrawnPeer& peer) const {
    DressPeer(peer);
    if (m_Picture) peer.SetPicture(m_Picture);
}

}  // namespace tb
