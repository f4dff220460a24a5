#include "ui/window/Label.h"

#include "ui/window/ControlErrors.h"
#include "ui/window/ControlTable.h"

namespace tb {

namespace {

// The system's colours of a dialog's face and of its text.
constexpr ControlColors LabelColors{static_cast<Color>(0x8000000F), static_cast<Color>(0x80000012)};
constexpr TwipSize FirstSize{1215, 495};
// The system lays out all that it is given, seen or not; a subject of a mail may have megabytes.
constexpr size_t LongestShown = 1000;

}  // namespace

Label::Label(const ControlPlace& place) : VisualControl(place, LabelColors) {
    Move(0, 0, FirstSize.Width, FirstSize.Height);
}

const ControlClass& Label::StaticClass() {
    static const ControlClass table("Label", &VisualControl::StaticClass(),
                                    {
                                        Property<&Label::Caption, &Label::SetCaption>("Caption"),
                                        Property<&Label::UseMnemonic, &Label::SetUseMnemonic>("UseMnemonic"),
                                    });
    return table;
}

void Label::SetCaption(const Text& caption) {
    if (caption == m_Caption) return;
    m_Caption = caption;
    if (m_Peer) m_Peer->SetText(Text(tb::Left(caption, LongestShown)));
}

void Label::SetUseMnemonic(bool useMnemonic) {
    if (useMnemonic == m_UseMnemonic) return;
    if (m_Peer) throw Error(ControlErrorNumber::NotAtRunTime);
    m_UseMnemonic = useMnemonic;
}

void Label::MakePeer(FormPeer& form) {
    m_Peer = form.MakeLabel(Around(), m_UseMnemonic);
    DressPeer(*m_Peer);
    m_Peer->SetText(Text(tb::Left(m_Caption, LongestShown)));
    m_Peer->SetVisible(Visible());
}

}  // namespace tb
