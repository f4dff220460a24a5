#include "ui/window/Label.h"

#include "ui/window/ControlErrors.h"
#include "ui/window/ControlTable.h"
#include "ui/window/Form.h"

namespace tb {

namespace {

constexpr ControlColors LabelColors{SystemColors::ButtonFace, SystemColors::ButtonText};
constexpr TwipSize FirstSize{1215, 495};

}  // namespace

Label::Label(const ControlPlace& place) : PointerControl(place, LabelColors) {
    Move(0, 0, FirstSize.Width, FirstSize.Height);
}

const ControlClass& Label::StaticClass() {
    static const ControlClass table("Label", &VisualControl::StaticClass(),
                                    {
                                        Property<&Label::Caption, &Label::SetCaption>("Caption"),
                                        Property<&Label::UseMnemonic, &Label::SetUseMnemonic>("UseMnemonic"),
                                        Property<&Label::AutoSize, &Label::SetAutoSize>("AutoSize"),
                                        Property<&Label::WordWrap, &Label::SetWordWrap>("WordWrap"),
                                        Property<&Label::Alignment, &Label::SetAlignment>("Alignment"),
                                        Property<&Label::BackStyle, &Label::SetBackStyle>("BackStyle"),
                                    });
    return table;
}

void Label::SetCaption(const Text& caption) {
    if (caption == m_Caption) return;
    m_Caption = caption;
    if (m_Peer) m_Peer->SetText(m_Caption);
    TakeSize();
}

void Label::SetUseMnemonic(bool useMnemonic) {
    if (useMnemonic == m_UseMnemonic) return;
    if (m_Peer) throw Error(ControlErrorNumber::NotAtRunTime);
    m_UseMnemonic = useMnemonic;
}

void Label::SetAutoSize(bool autoSize) {
    m_AutoSize = autoSize;
    TakeSize();
}

void Label::SetWordWrap(bool wordWrap) {
    m_WordWrap = wordWrap;
    TakeSize();
}

void Label::SetAlignment(std::int32_t alignment) {
    if (alignment < 0 || alignment > 2) throw Error(ControlErrorNumber::InvalidValue);
    m_Alignment = alignment;
    if (m_Peer) m_Peer->SetAlignment(alignment);
}

void Label::SetBackStyle(std::int32_t style) {
    if (style != 0 && style != 1) throw Error(ControlErrorNumber::InvalidValue);
    m_IsTransparent = style == 0;
    if (m_Peer) m_Peer->SetTransparent(m_IsTransparent);
}

void Label::SetFont(const tb::Font& font) {
    VisualControl::SetFont(font);
    TakeSize();
}

void Label::Placed(const TwipRect& before) {
    if (before.Width != Width() && m_WordWrap) TakeSize();
}

void Label::TakeSize() {
    if (!m_AutoSize) return;
    const TwipSize size = Parent()->Family().MeasureText(m_Caption, Font(), m_WordWrap ? Width() : 0);
    Move(Left(), Top(), m_WordWrap ? Width() : size.Width, size.Height);
}

void Label::MakePeer(FormPeer& form) {
    m_Peer = form.MakeLabel(Around(), Pointer(), m_UseMnemonic);
    DressPeer(*m_Peer);
    if (m_Alignment != 0) m_Peer->SetAlignment(m_Alignment);
    if (m_IsTransparent) m_Peer->SetTransparent(true);
    m_Peer->SetText(m_Caption);
    m_Peer->SetVisible(Visible());
}

}  // namespace tb
