// The model of what a window is made of. It runs without any window: a control keeps its properties itself and hands
// them to its peer, the window of the system, while there is one.
// Thread: the user-interface thread.
#pragma once

#include <memory>
#include <vector>

#include "base/event.h"
#include "ui/window/ControlClass.h"
#include "ui/window/Peers.h"
#include "ui/window/Twips.h"

namespace tb {

class Control;
class ControlHost;
class Form;

// Where a control stands in its form.
struct ControlPlace {
    // The form it stands on, null for a form itself.
    Form* Parent = nullptr;
    Text Name;
    // Its number in a control array of that name, NoIndex for a control that is alone.
    std::int32_t Index = -1;
    // The control that holds it: its form, a box, or a menu that is the head of a menu.
    Control* Container = nullptr;
    // The list that it stands in.
    ControlHost* Host = nullptr;
};

inline constexpr std::int32_t NoIndex = -1;

class Control : public std::enable_shared_from_this<Control> {
public:
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;
    virtual ~Control() = default;

    static const ControlClass& StaticClass();
    virtual const ControlClass& Class() const = 0;

    // Names are compared without case; what is answered has the spelling it was made with.
    Text Name() const { return m_Place.Name; }
    std::int32_t Index() const { return m_Place.Index; }
    Control* Container() const { return m_Place.Container; }
    // The list that it stands in; null for a form.
    ControlHost* Host() const { return m_Place.Host; }
    // The form it stands on; a form is its own.
    virtual Form* Parent() { return m_Place.Parent; }
    // Free for whoever uses the control.
    Text Tag() const { return m_Tag; }
    void SetTag(const Text& tag) { m_Tag = tag; }

    // Properties and methods by name. A name that the class does not have, or a property that cannot be set, raises
    // error 438; a value that does not convert raises 13 or 6; too few or too many arguments raise 450. What the
    // property or method itself raises comes through.
    Value GetProperty(TextView name) const;
    void SetProperty(TextView name, const Value& value);
    Value CallMethod(TextView name, const std::vector<Value>& arguments = {});

    // Makes and drops the window of the system. Called by the form when it loads and unloads; a control without a
    // window of its own does nothing.
    virtual void MakePeer(FormPeer& form);
    virtual void DropPeer() noexcept {}

    // What keeps the control, and the form it stands on, alive while one of its events is raised. A control that no
    // shared_ptr owns must be kept alive by its owner.
    virtual std::shared_ptr<void> KeepAlive();

protected:
    explicit Control(ControlPlace place) : m_Place(std::move(place)) {}

    // The window that holds those of other controls; null for all but boxes.
    virtual BoxPeer* Inside() const { return nullptr; }
    // Where the control's window goes: the box that holds it, or null for its form.
    BoxPeer* Around() const { return Container() != nullptr ? Container()->Inside() : nullptr; }

private:
    ControlPlace m_Place;
    Text m_Tag;
};

// A control that can be seen: it has a place, colours and can be disabled.
class VisualControl : public Control {
public:
    static const ControlClass& StaticClass();

    // Relative to the container; a form's to the screen, and its size includes the frame. A negative width or height
    // raises error 380.
    Twips Left() const { return m_Bounds.Left; }
    void SetLeft(Twips left);
    Twips Top() const { return m_Bounds.Top; }
    void SetTop(Twips top);
    Twips Width() const { return m_Bounds.Width; }
    void SetWidth(Twips width);
    Twips Height() const { return m_Bounds.Height; }
    void SetHeight(Twips height);
    const TwipRect& Bounds() const { return m_Bounds; }
    // All at once; what is not given stays.
    void Move(Twips left, std::optional<Twips> top = {}, std::optional<Twips> width = {},
              std::optional<Twips> height = {});

    bool Visible() const { return m_Visible; }
    virtual void SetVisible(bool visible);
    bool Enabled() const { return m_Enabled; }
    void SetEnabled(bool enabled);
    Color BackColor() const { return m_Colors.Back; }
    void SetBackColor(Color color);
    Color ForeColor() const { return m_Colors.Fore; }
    void SetForeColor(Color color);
    // By name this is "FontName", "FontSize" in points (1 to 500, error 380 for others), "FontBold", "FontItalic" and
    // "FontUnderline".
    const tb::Font& Font() const { return m_Font; }
    virtual void SetFont(const tb::Font& font);
    // Shown when the mouse rests on the control; that of a form is only stored.
    Text ToolTipText() const { return m_ToolTipText; }
    void SetToolTipText(const Text& text);

    // Moves the keyboard focus here. Error 5 while the control is hidden or disabled.
    void SetFocus();
    // 0 to the front, 1 to the back; nothing given is 0.
    virtual void ZOrder(std::optional<std::int32_t> position = {});

protected:
    VisualControl(ControlPlace place, const ControlColors& colors) : Control(std::move(place)), m_Colors(colors) {}

    // The window behind it, null while there is none.
    virtual WindowPeer* Peer() const = 0;
    // Whether the window takes input.
    virtual bool PeerEnabled() const { return m_Enabled; }
    // Hands all properties of this class to a new peer.
    void DressPeer(WindowPeer& peer) const;
    // The place has changed; what follows from that.
    virtual void Placed(const TwipRect& before);
    // The place that the window took by itself; the peer knows it already.
    void SetBoundsFromPeer(const TwipRect& bounds);

    bool m_Visible = true;

private:
    void SetBounds(const TwipRect& bounds);
    Text FontName() const { return m_Font.Name; }
    void SetFontName(const Text& name);
    double FontSize() const { return m_Font.Size; }
    void SetFontSize(double points);
    template <bool Font::*Flag>
    bool FontFlag() const {
        return m_Font.*Flag;
    }
    template <bool Font::*Flag>
    void SetFontFlag(bool value);

    TwipRect m_Bounds;
    bool m_Enabled = true;
    ControlColors m_Colors;
    tb::Font m_Font;
    Text m_ToolTipText;
};

}  // namespace tb
