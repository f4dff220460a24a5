// An area of a form that holds other controls: places inside count from its corner, and option buttons inside are one
// group.
#pragma once

#include "ui/window/Control.h"

namespace tb {

class PictureBox : public VisualControl {
public:
    explicit PictureBox(const ControlPlace& place);

    static const ControlClass& StaticClass();
    const ControlClass& Class() const override { return StaticClass(); }

    // 0 none, as at first, 1 a sunken line. Error 380 for others, 382 once the box has a window.
    std::int32_t BorderStyle() const { return m_HasBorder ? 1 : 0; }
    void SetBorderStyle(std::int32_t style);

    void MakePeer(FormPeer& form) override;
    void DropPeer() noexcept override { m_Peer.reset(); }

protected:
    WindowPeer* Peer() const override { return m_Peer.get(); }
    BoxPeer* Inside() const override { return m_Peer.get(); }

private:
    bool m_HasBorder = false;
    std::unique_ptr<BoxPeer> m_Peer;
};

}  // namespace tb
