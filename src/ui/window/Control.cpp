#include "ui/window/Control.h"

#include "ui/window/ControlErrors.h"
#include "ui/window/ControlTable.h"
#include "ui/window/Form.h"

namespace tb {

namespace {

// In points.
constexpr double SmallestFont = 1;
constexpr double LargestFont = 500;

}  // namespace

const ControlClass& Control::StaticClass() {
    static const ControlClass table("Control", nullptr,
                                    {
                                        ReadOnly<&Control::Name>("Name"),
                                        ReadOnly<&Control::Index>("Index"),
                                        Property<&Control::Tag, &Control::SetTag>("Tag"),
                                    });
    return table;
}

Value Control::GetProperty(TextView name) const {
    const PropertyEntry* const entry = Class().FindProperty(name);
    if (entry == nullptr) throw Error(ErrorNumber::NoSuchMember);
    return entry->Get(*this);
}

void Control::SetProperty(TextView name, const Value& value) {
    const PropertyEntry* const entry = Class().FindProperty(name);
    if (entry == nullptr || entry->Set == nullptr) throw Error(ErrorNumber::NoSuchMember);
    entry->Set(*this, value);
}

Value Control::CallMethod(TextView name, const std::vector<Value>& arguments) {
    const MethodEntry* const entry = Class().FindMethod(name);
    if (entry == nullptr) throw Error(ErrorNumber::NoSuchMember);
    if (arguments.size() < entry->Least || arguments.size() > entry->Most) {
        throw Error(ControlErrorNumber::WrongArgumentCount);
    }
    return entry->Call(*this, arguments);
}

void Control::MakePeer(FormPeer&) {}

std::shared_ptr<void> Control::KeepAlive() {
    using Pair = std::pair<std::shared_ptr<Control>, std::shared_ptr<Control>>;
    Form* const form = Parent();
    if (form == this) return weak_from_this().lock();
    return std::make_shared<Pair>(weak_from_this().lock(), form != nullptr ? form->weak_from_this().lock() : nullptr);
}

const ControlClass& VisualControl::StaticClass() {
    static const ControlClass table(
        "VisualControl", &Control::StaticClass(),
        {
            Property<&VisualControl::Left, &VisualControl::SetLeft>("Left"),
            Property<&VisualControl::Top, &VisualControl::SetTop>("Top"),
            Property<&VisualControl::Width, &VisualControl::SetWidth>("Width"),
            Property<&VisualControl::Height, &VisualControl::SetHeight>("Height"),
            Property<&VisualControl::Visible, &VisualControl::SetVisible>("Visible"),
            Property<&VisualControl::Enabled, &VisualControl::SetEnabled>("Enabled"),
            Property<&VisualControl::BackColor, &VisualControl::SetBackColor>("BackColor"),
            Property<&VisualControl::ForeColor, &VisualControl::SetForeColor>("ForeColor"),
            Property<&VisualControl::FontName, &VisualControl::SetFontName>("FontName"),
            Property<&VisualControl::FontSize, &VisualControl::SetFontSize>("FontSize"),
            Property<&VisualControl::FontFlag<&Font::Bold>, &VisualControl::SetFontFlag<&Font::Bold>>("FontBold"),
            Property<&VisualControl::FontFlag<&Font::Italic>, &VisualControl::SetFontFlag<&Font::Italic>>("FontItalic"),
            Property<&VisualControl::FontFlag<&Font::Underline>, &VisualControl::SetFontFlag<&Font::Underline>>(
                "FontUnderline"),
            Property<&VisualControl::ToolTipText, &VisualControl::SetToolTipText>("ToolTipText"),
        },
        {
            Method<&VisualControl::Move>("Move"),
            Method<&VisualControl::SetFocus>("SetFocus"),
            Method<&VisualControl::ZOrder>("ZOrder"),
        });
    return table;
}

void VisualControl::SetLeft(Twips left) { SetBounds({left, m_Bounds.Top, m_Bounds.Width, m_Bounds.Height}); }

void VisualControl::SetTop(Twips top) { SetBounds({m_Bounds.Left, top, m_Bounds.Width, m_Bounds.Height}); }

void VisualControl::SetWidth(Twips width) { SetBounds({m_Bounds.Left, m_Bounds.Top, width, m_Bounds.Height}); }

void VisualControl::SetHeight(Twips height) { SetBounds({m_Bounds.Left, m_Bounds.Top, m_Bounds.Width, height}); }

void VisualControl::Move(Twips left, std::optional<Twips> top, std::optional<Twips> width,
                         std::optional<Twips> height) {
    SetBounds({left, top.value_or(m_Bounds.Top), width.value_or(m_Bounds.Width), height.value_or(m_Bounds.Height)});
}

void VisualControl::SetBounds(const TwipRect& bounds) {
    if (bounds.Width < 0 || bounds.Height < 0) throw Error(ControlErrorNumber::InvalidValue);
    const TwipRect before = m_Bounds;
    if (bounds == before) return;
    m_Bounds = bounds;
    if (WindowPeer* const peer = Peer()) peer->SetBounds(bounds);
    Placed(before);
}

void VisualControl::SetBoundsFromPeer(const TwipRect& bounds) {
    const TwipRect before = m_Bounds;
    if (bounds == before) return;
    m_Bounds = bounds;
    Placed(before);
}

void VisualControl::Placed(const TwipRect&) {}

void VisualControl::SetVisible(bool visible) {
    if (m_Visible == visible) return;
    m_Visible = visible;
    if (WindowPeer* const peer = Peer()) peer->SetVisible(visible);
}

void VisualControl::SetEnabled(bool enabled) {
    if (m_Enabled == enabled) return;
    m_Enabled = enabled;
    if (WindowPeer* const peer = Peer()) peer->SetEnabled(PeerEnabled());
}

void VisualControl::SetBackColor(Color color) {
    if (color == m_Colors.Back) return;
    m_Colors.Back = color;
    if (WindowPeer* const peer = Peer()) peer->SetColors(m_Colors);
}

void VisualControl::SetForeColor(Color color) {
    if (color == m_Colors.Fore) return;
    m_Colors.Fore = color;
    if (WindowPeer* const peer = Peer()) peer->SetColors(m_Colors);
}

void VisualControl::SetFont(const tb::Font& font) {
    if (font.Size < SmallestFont || font.Size > LargestFont) throw Error(ControlErrorNumber::InvalidValue);
    if (font == m_Font) return;
    m_Font = font;
    if (WindowPeer* const peer = Peer()) peer->SetFont(m_Font);
}

void VisualControl::SetFontName(const Text& name) {
    tb::Font font = m_Font;
    font.Name = name;
    SetFont(font);
}

void VisualControl::SetFontSize(double points) {
    tb::Font font = m_Font;
    font.Size = points;
    SetFont(font);
}

template <bool Font::*Flag>
void VisualControl::SetFontFlag(bool value) {
    tb::Font font = m_Font;
    font.*Flag = value;
    SetFont(font);
}

void VisualControl::SetToolTipText(const Text& text) {
    m_ToolTipText = text;
    if (WindowPeer* const peer = Peer()) peer->SetToolTip(text);
}

void VisualControl::SetFocus() {
    if (!m_Visible || !m_Enabled) throw Error(ErrorNumber::InvalidCall);
    if (WindowPeer* const peer = Peer()) peer->SetFocus();
}

void VisualControl::ZOrder(std::optional<std::int32_t> position) {
    const std::int32_t place = position.value_or(0);
    if (place != 0 && place != 1) throw Error(ErrorNumber::InvalidCall);
    if (WindowPeer* const peer = Peer()) peer->SetZOrder(place == 1);
}

void VisualControl::DressPeer(WindowPeer& peer) const {
    peer.SetBounds(m_Bounds);
    peer.SetColors(m_Colors);
    if (m_Font != tb::Font()) peer.SetFont(m_Font);
    peer.SetEnabled(PeerEnabled());
    if (!m_ToolTipText.empty()) peer.SetToolTip(m_ToolTipText);
}

}  // namespace tb
