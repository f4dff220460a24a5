#include "ui/window/CommandButton.h"

#include "ui/window/ControlTable.h"

namespace tb {

namespace {

constexpr ControlColors ButtonColors{SystemColors::ButtonFace, SystemColors::ButtonText};
constexpr TwipSize FirstSize{1215, 495};

}  // namespace

CommandButton::CommandButton(const ControlPlace& place) : VisualControl(place, ButtonColors) {
    Move(0, 0, FirstSize.Width, FirstSize.Height);
}

const ControlClass& CommandButton::StaticClass() {
    static const ControlClass table("CommandButton", &VisualControl::StaticClass(),
                                    {
                                        Property<&CommandButton::Caption, &CommandButton::SetCaption>("Caption"),
                                        Property<&CommandButton::Default, &CommandButton::SetDefault>("Default"),
                                        Property<&CommandButton::Cancel, &CommandButton::SetCancel>("Cancel"),
                                    });
    return table;
}

void CommandButton::SetCaption(const Text& caption) {
    m_Caption = caption;
    if (m_Peer) m_Peer->SetText(caption);
}

void CommandButton::SetDefault(bool isDefault) {
    m_Default = isDefault;
    if (m_Peer) m_Peer->SetDefault(isDefault);
}

void CommandButton::SetCancel(bool isCancel) {
    m_Cancel = isCancel;
    if (m_Peer) m_Peer->SetCancel(isCancel);
}

void CommandButton::Click() {
    const auto alive = KeepAlive();
    ClickEvent.Raise();
}

void CommandButton::MakePeer(FormPeer& form) {
    m_Peer = form.MakeCommandButton(Around(), *this);
    DressPeer(*m_Peer);
    m_Peer->SetText(m_Caption);
    m_Peer->SetDefault(m_Default);
    m_Peer->SetCancel(m_Cancel);
    m_Peer->SetVisible(Visible());
}

}  // namespace tb
