#include "ui/window/PictureBox.h"

#include "ui/window/ControlErrors.h"
#include "ui/window/ControlTable.h"

namespace tb {

namespace {

// The system's colours of a dialog's face and of its text.
constexpr ControlColors BoxColors{static_cast<Color>(0x8000000F), static_cast<Color>(0x80000012)};
constexpr TwipSize FirstSize{1215, 1215};

}  // namespace

PictureBox::PictureBox(const ControlPlace& place) : VisualControl(place, BoxColors) {
    Move(0, 0, FirstSize.Width, FirstSize.Height);
}

const ControlClass& PictureBox::StaticClass() {
    static const ControlClass table("PictureBox", &VisualControl::StaticClass(),
                                    {
                                        Property<&PictureBox::BorderStyle, &PictureBox::SetBorderStyle>("BorderStyle"),
                                    });
    return table;
}

void PictureBox::SetBorderStyle(std::int32_t style) {
    if (style != 0 && style != 1) throw Error(ControlErrorNumber::InvalidValue);
    if (style == BorderStyle()) return;
    if (m_Peer) throw Error(ControlErrorNumber::NotAtRunTime);
    m_HasBorder = style == 1;
}

void PictureBox::MakePeer(FormPeer& form) {
    m_Peer = form.MakeBox(Around(), m_HasBorder);
    DressPeer(*m_Peer);
    m_Peer->SetVisible(Visible());
}

}  // namespace tb
