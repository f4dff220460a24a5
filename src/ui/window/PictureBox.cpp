#include "ui/window/PictureBox.h"

#include "ui/window/ControlErrors.h"
#include "ui/window/ControlTable.h"
#include "ui/window/Form.h"

namespace tb {

namespace {

constexpr ControlColors BoxColors{SystemColors::ButtonFace, SystemColors::ButtonText};
constexpr TwipSize FirstSize{1215, 1215};

}  // namespace

PictureBox::PictureBox(const ControlPlace& place) : DrawnControl(place, BoxColors) {
    Move(0, 0, FirstSize.Width, FirstSize.Height);
}

const ControlClass& PictureBox::StaticClass() {
    static const ControlClass table("PictureBox", &DrawnControl::StaticClass(),
                                    {
                                        Property<&PictureBox::BorderStyle, &PictureBox::SetBorderStyle>("BorderStyle"),
                                        Property<&PictureBox::AutoSize, &PictureBox::SetAutoSize>("AutoSize"),
                                        Property<&PictureBox::TabStop, &PictureBox::SetTabStop>("TabStop"),
                                    });
    return table;
}

void PictureBox::SetBorderStyle(std::int32_t style) {
    if (style != 0 && style != 1) throw Error(ControlErrorNumber::InvalidValue);
    if (style == BorderStyle()) return;
    if (m_Peer) throw Error(ControlErrorNumber::NotAtRunTime);
    m_HasBorder = style == 1;
}

void PictureBox::SetAutoSize(bool autoSize) {
    m_AutoSize = autoSize;
    TakeSize();
}

void PictureBox::SetPicture(const PictureRef& picture) {
    DrawnControl::SetPicture(picture);
    TakeSize();
}

void PictureBox::TakeSize() {
    const PictureRef picture = GetPicture();
    if (!m_AutoSize || !picture || picture->Pixels.empty()) return;
    const TwipScale scale = Parent()->Family().Scale();
    Move(Left(), Top(), scale.ToTwips(picture->Size.Width), scale.ToTwips(picture->Size.Height));
}

void PictureBox::SetTabStop(bool tabStop) {
    m_TabStop = tabStop;
    if (m_Peer) m_Peer->SetTabStop(tabStop);
}

void PictureBox::MakePeer(FormPeer& form) {
    m_Peer = form.MakeBox(Around(), Pointer(), m_HasBorder);
    DressDrawnPeer(*m_Peer);
    if (m_TabStop) m_Peer->SetTabStop(true);
    m_Peer->SetVisible(Visible());
}

}  // namespace tb
