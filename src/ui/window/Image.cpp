#include "ui/window/Image.h"

#include "ui/window/ControlErrors.h"
#include "ui/window/ControlTable.h"
#include "ui/window/Form.h"

namespace tb {

namespace {

constexpr ControlColors NoColors{SystemColors::ButtonFace, SystemColors::ButtonText};
constexpr TwipSize FirstSize{1215, 495};

}  // namespace

Image::Image(const ControlPlace& place) : VisualControl(place, NoColors) {
    Move(0, 0, FirstSize.Width, FirstSize.Height);
}

const ControlClass& Image::StaticClass() {
    static const ControlClass table("Image", &VisualControl::StaticClass(),
                                    {
                                        Property<&Image::GetPicture, &Image::SetPicture>("Picture"),
                                        Property<&Image::Stretch, &Image::SetStretch>("Stretch"),
                                        Property<&Image::BorderStyle, &Image::SetBorderStyle>("BorderStyle"),
                                    });
    return table;
}

void Image::SetPicture(const PictureRef& picture) {
    m_Picture = picture;
    TakeSize();
    Show();
}

void Image::SetStretch(bool stretch) {
    m_Stretch = stretch;
    TakeSize();
    Show();
}

void Image::SetBorderStyle(std::int32_t style) {
    if (style != 0 && style != 1) throw Error(ControlErrorNumber::InvalidValue);
    m_BorderStyle = style;
}

void Image::TakeSize() {
    if (m_Stretch || !m_Picture || m_Picture->Pixels.empty()) return;
    const TwipScale scale = Parent()->Family().Scale();
    Move(Left(), Top(), scale.ToTwips(m_Picture->Size.Width), scale.ToTwips(m_Picture->Size.Height));
}

void Image::Show() {
    if (m_Peer) m_Peer->SetPicture(m_Picture, m_Stretch);
}

void Image::SetVisible(bool visible) {
    m_Visible = visible;
    if (m_Peer) m_Peer->SetVisible(visible);
}

void Image::ZOrder(std::optional<std::int32_t> position) {
    VisualControl::ZOrder(position);
    if (m_Peer) m_Peer->SetZOrder(position == 1);
}

void Image::Placed(const TwipRect&) {
    if (m_Peer) m_Peer->SetBounds(Bounds());
}

void Image::MakePeer(FormPeer& form) {
    m_Peer = form.MakeImage(Around());
    m_Peer->SetBounds(Bounds());
    Show();
    m_Peer->SetVisible(Visible());
}

}  // namespace tb
