#include "ui/window/Line.h"

#include "ui/window/ControlTable.h"

namespace tb {

const ControlClass& Line::StaticClass() {
    static const ControlClass table(
        "Line", &Control::StaticClass(),
        {
            Property<&Line::Coordinate<&Line::m_From, &TwipPoint::X>,
                     &Line::SetCoordinate<&Line::m_From, &TwipPoint::X>>("X1"),
            Property<&Line::Coordinate<&Line::m_From, &TwipPoint::Y>,
                     &Line::SetCoordinate<&Line::m_From, &TwipPoint::Y>>("Y1"),
            Property<&Line::Coordinate<&Line::m_To, &TwipPoint::X>, &Line::SetCoordinate<&Line::m_To, &TwipPoint::X>>(
                "X2"),
            Property<&Line::Coordinate<&Line::m_To, &TwipPoint::Y>, &Line::SetCoordinate<&Line::m_To, &TwipPoint::Y>>(
                "Y2"),
            Property<&Line::BorderColor, &Line::SetBorderColor>("BorderColor"),
            Property<&Line::Visible, &Line::SetVisible>("Visible"),
        });
    return table;
}

template <TwipPoint Line::*End, Twips TwipPoint::*Part>
void Line::SetCoordinate(Twips twips) {
    (this->*End).*Part = twips;
    Place();
}

void Line::SetEnds(const TwipPoint& from, const TwipPoint& to) {
    m_From = from;
    m_To = to;
    Place();
}

void Line::Place() {
    if (m_Peer) m_Peer->SetEnds(m_From, m_To);
}

void Line::SetBorderColor(Color color) {
    m_Color = color;
    if (m_Peer) m_Peer->SetColor(color);
}

void Line::SetVisible(bool visible) {
    m_Visible = visible;
    if (m_Peer) m_Peer->SetVisible(visible);
}

void Line::MakePeer(FormPeer& form) {
    m_Peer = form.MakeLine(Around());
    Place();
    m_Peer->SetColor(m_Color);
    m_Peer->SetVisible(m_Visible);
}

}  // namespace tb
