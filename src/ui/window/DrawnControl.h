// A control that can be drawn on: a form, a picture box, a control that is made of others.
#pragma once

#include "ui/window/PointerControl.h"

namespace tb {

class DrawnControl : public PointerControl {
public:
    static const ControlClass& StaticClass();

    // What the window is drawn on, as large as the room inside it; null without a window. What was drawn goes with the
    // window, and with another BackColor.
    tb::Surface* Surface() const;
    // At the upper left corner, under all that is drawn.
    PictureRef GetPicture() const { return m_Picture; }
    virtual void SetPicture(const PictureRef& picture);
    // Every window keeps what is drawn on it; stored for those who ask.
    bool AutoRedraw() const { return m_AutoRedraw; }
    void SetAutoRedraw(bool autoRedraw) { m_AutoRedraw = autoRedraw; }
    // Takes the events of the mouse wherever it is, until False.
    void SetCapture(bool capture);

protected:
    using PointerControl::PointerControl;

    virtual DrawnPeer* Drawn() const = 0;
    WindowPeer* Peer() const override { return Drawn(); }
    void DressDrawnPeer(DrawnPeer& peer) const;

private:
    PictureRef m_Picture;
    bool m_AutoRedraw = false;
};

}  // namespace tb
