// A line, one pixel wide, that is painted into what holds it, beneath all windows there. It is no window of the system.
#pragma once

#include "ui/window/Control.h"

namespace tb {

class Line : public Control {
public:
    explicit Line(const ControlPlace& place) : Control(place) {}

    static const ControlClass& StaticClass();
    const ControlClass& Class() const override { return StaticClass(); }

    // Its ends, relative to what holds it; the second is left out. By name these are "X1", "Y1", "X2" and "Y2".
    const TwipPoint& From() const { return m_From; }
    const TwipPoint& To() const { return m_To; }
    void SetEnds(const TwipPoint& from, const TwipPoint& to);
    Color BorderColor() const { return m_Color; }
    void SetBorderColor(Color color);
    bool Visible() const { return m_Visible; }
    void SetVisible(bool visible);

    void MakePeer(FormPeer& form) override;
    void DropPeer() noexcept override { m_Peer.reset(); }

private:
    template <TwipPoint Line::*End, Twips TwipPoint::*Part>
    Twips Coordinate() const {
        return (this->*End).*Part;
    }
    template <TwipPoint Line::*End, Twips TwipPoint::*Part>
    void SetCoordinate(Twips twips);
    void Place();

    TwipPoint m_From;
    TwipPoint m_To;
    Color m_Color = SystemColors::WindowText;
    bool m_Visible = true;
    std::unique_ptr<LinePeer> m_Peer;
};

}  // namespace tb
