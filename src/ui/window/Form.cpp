#include "ui/window/Form.h"

#include <algorithm>

#include "ui/window/ControlErrors.h"
#include "ui/window/ControlTable.h"

namespace tb {

namespace {

constexpr ControlColors FormColors{SystemColors::ButtonFace, SystemColors::ButtonText};
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
    : DrawnControl({nullptr, name, NoIndex, nullptr, nullptr}, FormColors), m_Forms(forms) {
    m_Visible = false;
    Move(0, 0, FirstSize.Width, FirstSize.Height);
}

Form::~Form() {
    // Whoever listens may be gone: the windows tell nothing of their end.
    m_Loaded = false;
    DropPeers();
    m_Forms.Remove(*this, false);
}

const ControlClass& Form::StaticClass() {
    static const ControlClass table("Form", &DrawnControl::StaticClass(),
                                    {
                                        Property<&Form::Caption, &Form::SetCaption>("Caption"),
                                        Property<&Form::WindowState, &Form::SetWindowState>("WindowState"),
                                        Property<&Form::BorderStyle, &Form::SetBorderStyle>("BorderStyle"),
                                        Property<&Form::Icon, &Form::SetIcon>("Icon"),
                                        Property<&Form::MousePointer, &Form::SetMousePointer>("MousePointer"),
                                        Property<&Form::Appearance, &Form::SetAppearance>("Appearance"),
                                        Property<&Form::FillColor, &Form::SetFillColor>("FillColor"),
                                        Property<&Form::ShowInTaskbar, &Form::SetShowInTaskbar>("ShowInTaskbar"),
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
        m_Peer = m_Forms.System()->MakeForm(*this, Pointer());
        m_Peer->SetBorderStyle(m_BorderStyle);
        m_Peer->SetText(m_Caption);
        m_Peer->SetIcon(m_Icon);
        m_Peer->SetWindowState(m_State);
        if (!m_InTaskList) m_Peer->SetInTaskList(false);
        if (m_TopMost) m_Peer->SetTopMost(true, false);
        if (m_Layering) m_Peer->SetLayering(*m_Layering);
        if (m_Owner != nullptr && m_Owner->m_Peer) m_Peer->SetOwner(m_Owner->m_Peer.get());
        if (m_MousePointer != MousePointers::Default) m_Peer->SetMousePointer(m_MousePointer);
        DressDrawnPeer(*m_Peer);
        MakePeersOfControls(*m_Peer);
    } catch (...) {
        DropPeers();
        throw;
    }
}

void Form::DropPeers() noexcept {
    // The system would take the windows of those that this one owns along.
    for (Form* const other : m_Forms.Loaded()) {
        if (m_Peer && other->m_Owner == this && other->m_Peer) other->m_Peer->SetOwner(nullptr);
    }
    DropPeersOfControls();
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

void Form::SetVisible(bool visible) { ShowOrHide(visible, true); }

void Form::ShowInactive() { ShowOrHide(true, false); }

void Form::ShowOrHide(bool visible, bool activate) {
    const auto alive = KeepAlive();
    if (visible) Load();
    if (!m_Loaded || m_Visible == visible) return;
    if (!visible) m_Forms.EndModal(*this);
    m_Visible = visible;
    if (m_Peer && activate) m_Peer->SetVisible(visible);
    if (m_Peer && !activate) m_Peer->ShowInactive();
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

void Form::SetTopMost(bool onTop, bool activate) {
    m_TopMost = onTop;
    if (m_Peer) m_Peer->SetTopMost(onTop, activate);
}

void Form::Flash() {
    if (m_Peer) m_Peer->Flash();
}

void Form::SetOwner(Form* owner) {
    m_Owner = owner;
    if (m_Peer) m_Peer->SetOwner(owner != nullptr ? owner->m_Peer.get() : nullptr);
}

void Form::SetShowInTaskbar(bool show) {
    if (show == m_InTaskList) return;
    m_InTaskList = show;
    if (m_Peer) m_Peer->SetInTaskList(show);
}

void Form::SetRoundRegion(PixelPoint from, PixelPoint to, std::int32_t corner) {
    if (m_Peer) m_Peer->SetRoundRegion(from, to, corner);
}

void Form::SetLayering(const Layering& layering) {
    m_Layering = layering;
    if (m_Peer) m_Peer->SetLayering(layering);
}

bool Form::DragByCaption() {
    if (!m_Peer) return false;
    const auto alive = KeepAlive();
    const TwipPoint before{Left(), Top()};
    m_Peer->DragByCaption();
    return before != TwipPoint{Left(), Top()};
}

void Form::KeepOnScreen() {
    const TwipRect room = RoomAround(m_Forms.Screens(), Bounds());
    const Twips width = std::min(Width(), room.Width);
    const Twips height = std::min(Height(), room.Height);
    Move(std::clamp(Left(), room.Left, room.Left + room.Width - width),
         std::clamp(Top(), room.Top, room.Top + room.Height - height), width, height);
}

void Form::Activated(bool active) {
    if (active && m_Loaded) ActivateEvent.Raise();
}

bool Form::KeyPressed(const KeyPress& key) {
    bool handled = false;
    KeyDownEvent.Raise(key, handled);
    return handled;
}

}  // namespace tb
