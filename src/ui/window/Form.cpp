#include "ui/window/Form.h"

#include <algorithm>

#include "ui/window/ControlErrors.h"
#include "ui/window/ControlTable.h"

namespace tb {

namespace {

// The system's colours of a dialog's face and of its text.
constexpr ControlColors FormColors{static_cast<Color>(0x8000000F), static_cast<Color>(0x80000012)};
constexpr TwipSize FirstSize{4800, 3600};

// Sets a flag for the length of a scope.
class Raised {
public:
    explicit Raised(bool& flag) : m_Flag(flag) { m_Flag = true; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;
    ~Raised() { m_Flag = false; }

private:
    bool& m_Flag;
};

}  // namespace

Form::Form(Forms& forms, const Text& name)
    : VisualControl({nullptr, name, NoIndex, nullptr}, FormColors), m_Forms(forms) {
    m_Visible = false;
    Move(0, 0, FirstSize.Width, FirstSize.Height);
}

Form::~Form() {
    DropPeers();
    m_Forms.Remove(*this, false);
}

const ControlClass& Form::StaticClass() {
    static const ControlClass table("Form", &VisualControl::StaticClass(),
                                    {
                                        Property<&Form::Caption, &Form::SetCaption>("Caption"),
                                        Property<&Form::WindowState, &Form::SetWindowState>("WindowState"),
                                        Property<&Form::BorderStyle, &Form::SetBorderStyle>("BorderStyle"),
                                        Property<&Form::Icon, &Form::SetIcon>("Icon"),
                                        Property<&Form::MousePointer, &Form::SetMousePointer>("MousePointer"),
                                        Property<&Form::Appearance, &Form::SetAppearance>("Appearance"),
                                        Property<&Form::AutoRedraw, &Form::SetAutoRedraw>("AutoRedraw"),
                                        Property<&Form::FillColor, &Form::SetFillColor>("FillColor"),
                                        ReadOnly<&Form::ScaleWidth>("ScaleWidth"),
                                        ReadOnly<&Form::ScaleHeight>("ScaleHeight"),
                                        ReadOnly<&Form::hWnd>("hWnd"),
                                    },
                                    {
                                        Method<&Form::Show>("Show"),
                                        Method<&Form::Hide>("Hide"),
                                    });
    return table;
}

void Form::Load() {
    if (m_Loaded) return;
    const auto alive = KeepAlive();
    MakePeers();
    m_Loaded = true;
    m_Forms.Add(*this);
    LoadEvent.Raise();
}

void Form::MakePeers() {
    if (m_Forms.System() == nullptr) return;
    try {
        m_Peer = m_Forms.System()->MakeForm(*this);
        m_Peer->SetBorderStyle(m_BorderStyle);
        m_Peer->SetText(m_Caption);
        m_Peer->SetIcon(m_Icon);
        m_Peer->SetWindowState(m_State);
        if (m_TopMost) m_Peer->SetTopMost(true);
        if (m_MousePointer != MousePointers::Default) m_Peer->SetMousePointer(m_MousePointer);
        DressPeer(*m_Peer);
        for (const auto& control : m_Controls) control->MakePeer(*m_Peer);
    } catch (...) {
        DropPeers();
        throw;
    }
}

void Form::DropPeers() noexcept {
    // What a box holds goes before the box.
    for (size_t index = m_Controls.size(); index-- > 0;) m_Controls[index]->DropPeer();
    m_Peer.reset();
}

bool Form::Unload(UnloadMode mode) {
    if (!m_Loaded) return true;
    if (m_Querying || m_Unloading) return false;
    const auto alive = KeepAlive();
    const bool may = MayUnload(mode);
    // The session may have ended while a handler asked the user.
    if (!may || !m_Loaded) return !m_Loaded;
    {
        const Raised unloading(m_Unloading);
        bool cancel = false;
        UnloadEvent.Raise(cancel);
        if (cancel) return false;
    }
    Finish();
    return true;
}

bool Form::MayUnload(UnloadMode mode) {
    const Raised querying(m_Querying);
    bool cancel = false;
    QueryUnloadEvent.Raise(cancel, mode);
    return !cancel;
}

bool Form::SessionEnding() {
    // A form that is asking already does not ask twice, and holds up no session.
    return m_Querying || m_Unloading || MayUnload(UnloadMode::Session);
}

void Form::SessionEnds() {
    if (!m_Loaded || m_Unloading) return;
    {
        const Raised unloading(m_Unloading);
        bool ignored = false;
        UnloadEvent.Raise(ignored);
    }
    Finish();
}

void Form::Finish() {
    // While this window still stands, or the system would bring up one of another program.
    m_Forms.EndModal(*this);
    m_Loaded = false;
    m_Visible = false;
    m_WasShown = false;
    if (m_Peer) m_Peer->EndModes();
    DropPeers();
    m_Forms.Remove(*this, true);
}

void Form::SetVisible(bool visible) {
    const auto alive = KeepAlive();
    if (visible) Load();
    if (!m_Loaded || m_Visible == visible) return;
    if (!visible) m_Forms.EndModal(*this);
    m_Visible = visible;
    if (m_Peer) m_Peer->SetVisible(visible);
    if (!visible || m_WasShown) return;
    m_WasShown = true;
    ResizeEvent.Raise();
}

void Form::ShowModal() {
    const auto alive = KeepAlive();
    SetVisible(true);
    if (m_Forms.System() == nullptr) return;
    m_Forms.BeginModal(*this);
    SetForeground();
    m_Forms.System()->ServeUntil([this] { return !m_Visible; });
    m_Forms.EndModal(*this);
}

void Form::ApplyEnabled() {
    if (m_Peer) m_Peer->SetEnabled(PeerEnabled());
}

void Form::Placed(const TwipRect& before) {
    const bool sized = before.Width != Width() || before.Height != Height();
    if (sized && m_Loaded) ResizeEvent.Raise();
}

void Form::WindowPlaced(WindowStates state, const TwipRect& bounds) {
    const bool hasSize = state != WindowStates::Minimized;
    const bool sized = hasSize && (bounds.Width != Width() || bounds.Height != Height());
    const bool changed = state != m_State;
    m_State = state;
    // Raises ResizeEvent itself when the size is another one.
    if (hasSize) SetBoundsFromPeer(bounds);
    if (changed && !sized && m_Loaded) ResizeEvent.Raise();
}

void Form::SetCaption(const Text& caption) {
    m_Caption = caption;
    if (m_Peer) m_Peer->SetText(caption);
}

void Form::SetWindowState(std::int32_t state) {
    if (state < 0 || state > 2) throw Error(ControlErrorNumber::InvalidValue);
    if (state == WindowState()) return;
    m_State = static_cast<WindowStates>(state);
    if (m_Peer) m_Peer->SetWindowState(m_State);
    if (m_Loaded) ResizeEvent.Raise();
}

void Form::SetBorderStyle(std::int32_t style) {
    if (style < 0 || style > 5) throw Error(ControlErrorNumber::InvalidValue);
    m_BorderStyle = static_cast<BorderStyles>(style);
    if (m_Peer) m_Peer->SetBorderStyle(m_BorderStyle);
}

void Form::SetIcon(const PictureRef& icon) {
    m_Icon = icon;
    if (m_Peer) m_Peer->SetIcon(icon);
}

void Form::SetMousePointer(std::int32_t pointer) {
    if (pointer != 0 && pointer != 11) throw Error(ControlErrorNumber::InvalidValue);
    m_MousePointer = static_cast<MousePointers>(pointer);
    if (m_Peer) m_Peer->SetMousePointer(m_MousePointer);
}

IconNumber Form::WindowIcon() const { return m_Peer ? m_Peer->Icon() : 0; }

WindowHandle Form::hWnd() const { return m_Peer ? m_Peer->Window() : 0; }

Twips Form::ScaleWidth() const { return m_Peer ? m_Peer->ClientSize().Width : Width(); }

Twips Form::ScaleHeight() const { return m_Peer ? m_Peer->ClientSize().Height : Height(); }

bool Form::SetForeground() { return m_Peer && m_Peer->SetForeground(); }

void Form::SetTopMost(bool onTop) {
    m_TopMost = onTop;
    if (m_Peer) m_Peer->SetTopMost(onTop);
}

Control& Form::AddControl(const std::shared_ptr<Control>& control) {
    const Text name = LowerCase(control->Name());
    for (const auto& other : m_Controls) {
        if (LowerCase(other->Name()) != name) continue;
        const bool elements = other->Index() != NoIndex && control->Index() != NoIndex;
        if (!elements) throw Error(ControlErrorNumber::NameInUse);
        if (other->Index() == control->Index()) throw Error(ControlErrorNumber::AlreadyLoaded);
    }
    m_Controls.push_back(control);
    try {
        if (m_Peer) control->MakePeer(*m_Peer);
    } catch (...) {
        m_Controls.pop_back();
        throw;
    }
    return *control;
}

void Form::Remove(Control& control) {
    const auto is = [](const Control* wanted) {
        return [wanted](const std::shared_ptr<Control>& one) { return one.get() == wanted; };
    };
    const auto place = std::find_if(m_Controls.begin(), m_Controls.end(), is(&control));
    if (place == m_Controls.end()) return;
    const std::shared_ptr<Control> kept = *place;
    m_Controls.erase(place);
    std::vector<Control*> held;
    for (const auto& one : m_Controls) {
        if (one->Container() == &control) held.push_back(one.get());
    }
    for (Control* const one : held) Remove(*one);
    kept->DropPeer();
}

Control* Form::Find(TextView name, std::int32_t index) const {
    const Text wanted = LowerCase(name);
    for (const auto& control : m_Controls) {
        if (control->Index() == index && LowerCase(control->Name()) == wanted) return control.get();
    }
    return nullptr;
}

}  // namespace tb
