// A window of the program with its controls. Classes of windows derive from it, add their controls in the constructor
// and connect to the events.
// Owned by a shared_ptr, a form may be dropped inside its own events; otherwise its owner drops it outside of them.
#pragma once

#include "ui/window/ControlHost.h"
#include "ui/window/DrawnControl.h"
#include "ui/window/Forms.h"

namespace tb {

class Menu;

class Form : public DrawnControl, public ControlHost, private FormEvents {
public:
    // Not loaded: without a window, hidden, 4800 by 3600 twips at 0, 0, sizable. `forms` must outlive the form.
    Form(Forms& forms, const Text& name);
    // A loaded form loses its window without its unload events.
    ~Form() override;

    static const ControlClass& StaticClass();
    const ControlClass& Class() const override { return StaticClass(); }
    Form* Parent() override { return this; }
    std::shared_ptr<void> KeepAlive() override { return PointerControl::KeepAlive(); }

    // Raised by Load, when window and controls have their peers.
    Event<> LoadEvent;
    // The window has another size or state; raised too when it is first shown.
    Event<> ResizeEvent;
    // The form is to be unloaded; a handler that sets `cancel` keeps it.
    Event<bool&, UnloadMode> QueryUnloadEvent;
    // The same, when no QueryUnloadEvent has cancelled. At the end of a session `cancel` has no effect.
    Event<bool&> UnloadEvent;
    // It has become the active window.
    Event<> ActivateEvent;
    // A key on the form or on what stands on it, before the control has it; a handler that sets `handled` keeps it.
    Event<const KeyPress&, bool&> KeyDownEvent;
    // The user has chosen other colours, or high contrast, for the system.
    Event<> SystemColorsEvent;

    // Makes the window and those of the controls, then raises LoadEvent. Nothing happens when it is loaded. Raises what
    // the system or a handler raises; after a failure of the system the form is not loaded.
    void Load();
    bool IsLoaded() const { return m_Loaded; }
    // Raises QueryUnloadEvent and UnloadEvent; if none cancels, the windows go, properties and controls stay. True when
    // the form is not loaded afterwards. Called again from inside these events it does nothing and answers False.
    bool Unload(UnloadMode mode = UnloadMode::Code);
    // Shows it, loading it first.
    void Show() { SetVisible(true); }
    // Shows it, loading it first, and leaves the active window what it is; clicks on it do so too.
    void ShowInactive();
    // Shows it in front of all others and returns when it is hidden or unloaded, or when the program's message loop
    // ends. Messages are served meanwhile, but the windows that were visible before take no input. Whoever owns the
    // form keeps it until then. Without a system it returns at once.
    void ShowModal();
    void Hide() { SetVisible(false); }
    // True loads the form first; False for a form that is not loaded does nothing.
    void SetVisible(bool visible) override;

    Text Caption() const { return m_Caption; }
    void SetCaption(const Text& caption);
    // 0 normal, 1 minimised, 2 maximised; error 380 for others. A hidden form takes the state when it is shown.
    std::int32_t WindowState() const { return static_cast<std::int32_t>(m_State); }
    void SetWindowState(std::int32_t state);
    // 0 none, 1 fixed single, 2 sizable, 3 fixed dialog, 4 fixed tool, 5 sizable tool; error 380 for others.
    std::int32_t BorderStyle() const { return static_cast<std::int32_t>(m_BorderStyle); }
    void SetBorderStyle(std::int32_t style);
    // An icon file; null is the program's own icon.
    PictureRef Icon() const { return m_Icon; }
    void SetIcon(const PictureRef& icon);
    // The icon of the window, 0 without a window.
    IconNumber WindowIcon() const;
    // The window, 0 when there is none.
    WindowHandle hWnd() const;
    // The room inside the frame; without a window the whole size.
    Twips ScaleWidth() const;
    Twips ScaleHeight() const;
    // 0 the usual one, 11 the hourglass; error 380 for others.
    std::int32_t MousePointer() const { return static_cast<std::int32_t>(m_MousePointer); }
    void SetMousePointer(std::int32_t pointer);
    // Stored for those who ask.
    std::int32_t Appearance() const { return m_Appearance; }
    void SetAppearance(std::int32_t appearance) { m_Appearance = appearance; }
    Color FillColor() const { return m_FillColor; }
    void SetFillColor(Color color) { m_FillColor = color; }

    // Makes the window the foreground window; False when the system refuses or there is no window.
    bool SetForeground();
    bool IsForeground() const { return m_Peer && m_Peer->IsForeground(); }
    // Asks for the user in the task list.
    void Flash();
    // Keeps the window above all others that are not kept so, or ends that. A form that is not loaded takes it when it
    // is; place and size stay. With `activate` a window that is shown becomes the active one.
    void SetTopMost(bool onTop, bool activate = true);
    // Stays in front of `owner` and goes with it, for as long as both are loaded; null for none. The owner outlives
    // this form or is taken away before.
    void SetOwner(Form* owner);
    // Whether a form without a frame stands in the task list, as others do; with keys and menu of a framed window.
    bool ShowInTaskbar() const { return m_InTaskList; }
    void SetShowInTaskbar(bool show);
    // See FormPeer; nothing without a window.
    void SetRoundRegion(PixelPoint from, PixelPoint to, std::int32_t corner);
    // How translucent it is. A form that is not loaded takes it when it is.
    void SetLayering(const Layering& layering);
    // Inside MouseDownEvent of the left button: the window follows the mouse until the button is released. True when it
    // stands elsewhere afterwards. Messages are served meanwhile.
    bool DragByCaption();
    // At most as large as the screen that most of it lies on, and wholly there.
    void KeepOnScreen();
    // Shows the visible items of a menu at the mouse, `defaultItem` in bold, and raises the chosen one's ClickEvent
    // before it returns. Does nothing without a window, while another menu of this form is open, or without a visible
    // item.
    void PopupMenu(Menu& menu, std::uint32_t flags = 0, const Menu* defaultItem = nullptr);

    Forms& Family() const { return m_Forms; }

protected:
    DrawnPeer* Drawn() const override { return m_Peer.get(); }
    Control& HostControl() override { return *this; }
    FormPeer* PeerOfForm() const override { return m_Peer.get(); }
    bool PeerEnabled() const override { return Enabled() && !m_Forms.IsBlocked(*this); }
    void Placed(const TwipRect& before) override;

private:
    friend class Forms;
    void ApplyEnabled();
    void ShowOrHide(bool visible, bool activate);
    void MakePeers();
    void DropPeers() noexcept;
    bool MayUnload(UnloadMode mode);
    void Finish();

    void WindowPlaced(WindowStates state, const TwipRect& bounds) override;
    void CloseAsked() override { Unload(UnloadMode::User); }
    void Activated(bool active) override;
    bool KeyPressed(const KeyPress& key) override;
    void SystemColorsChanged() override { SystemColorsEvent.Raise(); }
    bool SessionEnding() override;
    void SessionEnds() override;

    Forms& m_Forms;
    Text m_Caption;
    WindowStates m_State = WindowStates::Normal;
    BorderStyles m_BorderStyle = BorderStyles::Sizable;
    MousePointers m_MousePointer = MousePointers::Default;
    PictureRef m_Icon;
    std::int32_t m_Appearance = 1;
    Color m_FillColor = 0;
    bool m_TopMost = false;
    bool m_InTaskList = true;
    std::optional<Layering> m_Layering;
    Form* m_Owner = nullptr;
    bool m_Loaded = false;
    bool m_WasShown = false;
    // The form asks whether it may be unloaded, and is being unloaded.
    bool m_Querying = false;
    bool m_Unloading = false;
    bool m_MenuOpen = false;
    std::unique_ptr<FormPeer> m_Peer;
};

}  // namespace tb
