#include "ui/window/TextBox.h"

#include <algorithm>

#include "ui/window/ControlErrors.h"
#include "ui/window/ControlTable.h"

namespace tb {

namespace {

constexpr ControlColors BoxColors{SystemColors::Window, SystemColors::WindowText};
constexpr TwipSize FirstSize{1215, 495};

}  // namespace

TextBox::TextBox(const ControlPlace& place) : VisualControl(place, BoxColors) {
    Move(0, 0, FirstSize.Width, FirstSize.Height);
}

const ControlClass& TextBox::StaticClass() {
    static const ControlClass table("TextBox", &VisualControl::StaticClass(),
                                    {
                                        Property<&TextBox::GetText, &TextBox::SetText>("Text"),
                                        Property<&TextBox::SelStart, &TextBox::SetSelStart>("SelStart"),
                                        Property<&TextBox::MultiLine, &TextBox::SetMultiLine>("MultiLine"),
                                        Property<&TextBox::Locked, &TextBox::SetLocked>("Locked"),
                                    });
    return table;
}

void TextBox::SetText(const Text& text) {
    if (text == m_Text) return;
    m_Text = text;
    m_SelStart = 0;
    if (m_Peer) m_Peer->SetText(m_Text);
    ChangeEvent.Raise();
}

void TextBox::TextChanged(const Text& text) {
    m_Text = text;
    ChangeEvent.Raise();
}

std::int32_t TextBox::SelStart() const { return m_Peer ? m_Peer->SelStart() : m_SelStart; }

void TextBox::SetSelStart(std::int32_t position) {
    if (position < 0) throw Error(ControlErrorNumber::InvalidValue);
    m_SelStart = static_cast<std::int32_t>(std::min(static_cast<size_t>(position), m_Text.size()));
    if (m_Peer) m_Peer->SetSelStart(m_SelStart);
}

void TextBox::SetMultiLine(bool multiLine) {
    if (multiLine == m_MultiLine) return;
    if (m_Peer) throw Error(ControlErrorNumber::NotAtRunTime);
    m_MultiLine = multiLine;
}

void TextBox::SetLocked(bool locked) {
    m_Locked = locked;
    if (m_Peer) m_Peer->SetLocked(locked);
}

void TextBox::MakePeer(FormPeer& form) {
    m_Peer = form.MakeTextBox(*this, m_MultiLine);
    DressPeer(*m_Peer);
    m_Peer->SetText(m_Text);
    m_Peer->SetLocked(m_Locked);
    m_Peer->SetSelStart(m_SelStart);
    m_Peer->SetVisible(Visible());
}

}  // namespace tb
