// An area of a form that holds other controls: places inside count from its corner, and option buttons inside are one
// group.
#pragma once

#include "ui/window/DrawnControl.h"

namespace tb {

class PictureBox : public DrawnControl {
public:
    explicit PictureBox(const ControlPlace& place);

    static const ControlClass& StaticClass();
    const ControlClass& Class() const override { return StaticClass(); }

    // 0 none, as at first, 1 a sunken line. Error 380 for others, 382 once the box has a window.
    std::int32_t BorderStyle() const { return m_HasBorder ? 1 : 0; }
    void SetBorderStyle(std::int32_t style);

    // The box takes the size of its picture, at once and with each other one.
    bool AutoSize() const { return m_AutoSize; }
    void SetAutoSize(bool autoSize);
    void SetPicture(const PictureRef& picture) override;
    // Whether the Tab key reaches it; False at first.
    bool TabStop() const { return m_TabStop; }
    void SetTabStop(bool tabStop);

    void MakePeer(FormPeer& form) override;
    void DropPeer() noexcept override { m_Peer.reset(); }

protected:
    DrawnPeer* Drawn() const override { return m_Peer.get(); }
    BoxPeer* Inside() const override { return m_Peer.get(); }

private:
    void TakeSize();

    bool m_HasBorder = false;
    bool m_AutoSize = false;
    bool m_TabStop = false;
    std::unique_ptr<BoxPeer> m_Peer;
};

}  // namespace tb
