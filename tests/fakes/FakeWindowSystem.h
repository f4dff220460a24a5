// Windows that are only remembered. A test looks at what a peer was told and plays the user through its events.
#pragma once

#include <functional>
#include <map>
#include <utility>

#include "base/errors.h"
#include "ui/window/Peers.h"

namespace tb {

class FakeWindowSystem : public WindowSystem {
public:
    // What all windows were told, in order: "form1.text Caption". Windows are named by number: "form1",
    // "form1.box1", "form1.timer1".
    std::vector<Text> Calls;
    // The windows and timers that exist.
    int Live = 0;
    // What a menu that is opened answers, and the rows of the last one.
    std::int32_t MenuAnswer = 0;
    std::vector<MenuRow> MenuRows;
    // Runs while a menu is open.
    std::function<void()> WhileMenuIsOpen;
    // Plays the user while a form is shown modally; afterwards the wait is over, whatever was asked for.
    std::function<void()> WhileModal;

    // Those that exist, by name.
    std::map<Text, FormEvents*> FormsByName;
    std::map<Text, TextBoxEvents*> Boxes;
    std::map<Text, ButtonEvents*> Buttons;
    std::map<Text, TimerEvents*> Timers;

    std::unique_ptr<FormPeer> MakeForm(FormEvents& events) override;
    TwipSize ScreenSize() const override { return {19200, 15360}; }
    TwipScale Scale() const override { return TwipScale(96); }
    void ServeUntil(const std::function<bool()>& done) override {
        if (!done() && WhileModal) WhileModal();
    }

    // The calls since the last time, joined by ", ".
    Text Take() { return Join(std::exchange(Calls, {}), ", "); }

private:
    template <typename Base>
    class Remembered : public Base {
    public:
        Remembered(FakeWindowSystem& system, Text name) : m_System(system), m_Name(std::move(name)) { ++m_System.Live; }
        Remembered(const Remembered&) = delete;
        Remembered& operator=(const Remembered&) = delete;
        ~Remembered() override {
            --m_System.Live;
            Note("gone");
        }

        void SetBounds(const TwipRect& bounds) override {
            Note("bounds " + std::to_string(bounds.Left) + " " + std::to_string(bounds.Top) + " " +
                 std::to_string(bounds.Width) + " " + std::to_string(bounds.Height));
        }
        void SetVisible(bool visible) override { Note(visible ? "show" : "hide"); }
        void SetEnabled(bool enabled) override { Note(enabled ? "enable" : "disable"); }
        void SetText(const Text& text) override { Note("text " + text); }
        void SetColors(const ControlColors& colors) override {
            Note("colors " + std::to_string(colors.Back) + " " + std::to_string(colors.Fore));
        }
        void SetFocus() override { Note("focus"); }
        void SetZOrder(bool toBack) override { Note(toBack ? "back" : "front"); }
        void SetToolTip(const Text& text) override { Note("tip " + text); }
        const Text& Name() const { return m_Name; }

    protected:
        void Note(const Text& call) { m_System.Calls.push_back(m_Name + "." + call); }

        FakeWindowSystem& m_System;
        Text m_Name;
    };

    // Events that a test may raise, for as long as the window or timer exists.
    template <typename Events>
    class Reachable {
    public:
        Reachable(std::map<Text, Events*>& all, Events& events, const Text& name) : m_All(all), m_Name(name) {
            m_All[m_Name] = &events;
        }
        Reachable(const Reachable&) = delete;
        Reachable& operator=(const Reachable&) = delete;
        ~Reachable() { m_All.erase(m_Name); }

    private:
        std::map<Text, Events*>& m_All;
        Text m_Name;
    };

    struct Box : Remembered<TextBoxPeer> {
        Box(FakeWindowSystem& system, TextBoxEvents& events, const Text& name)
            : Remembered(system, name), Outside(system.Boxes, events, name) {}
        void SetLocked(bool locked) override { Note(locked ? "lock" : "unlock"); }
        std::int32_t SelStart() const override { return Start; }
        void SetSelStart(std::int32_t position) override { Start = position; }
        std::int32_t Start = 0;
        Reachable<TextBoxEvents> Outside;
    };

    struct Push : Remembered<CommandButtonPeer> {
        Push(FakeWindowSystem& system, ButtonEvents& events, const Text& name)
            : Remembered(system, name), Outside(system.Buttons, events, name) {}
        void SetDefault(bool isDefault) override { Note(isDefault ? "default" : "not default"); }
        void SetCancel(bool isCancel) override { Note(isCancel ? "cancel" : "not cancel"); }
        Reachable<ButtonEvents> Outside;
    };

    struct Option : Remembered<OptionButtonPeer> {
        Option(FakeWindowSystem& system, ButtonEvents& events, const Text& name)
            : Remembered(system, name), Outside(system.Buttons, events, name) {}
        void SetSelected(bool selected) override { Note(selected ? "select" : "unselect"); }
        void SetTabStop(bool tabStop) override { Note(tabStop ? "stop" : "no stop"); }
        Reachable<ButtonEvents> Outside;
    };

    struct Clockwork : TimerPeer {
        Clockwork(FakeWindowSystem& system, TimerEvents& events, const Text& name)
            : System(system), Name(name), Outside(system.Timers, events, name) {
            ++System.Live;
        }
        ~Clockwork() override { --System.Live; }
        void Start(std::int32_t milliseconds) override {
            System.Calls.push_back(Name + ".start " + std::to_string(milliseconds));
        }
        void Stop() override { System.Calls.push_back(Name + ".stop"); }
        FakeWindowSystem& System;
        Text Name;
        Reachable<TimerEvents> Outside;
    };

    class Frame;
    int m_Made = 0;
};

class FakeWindowSystem::Frame : public Remembered<FormPeer> {
public:
    Frame(FakeWindowSystem& system, FormEvents& events, const Text& name)
        : Remembered(system, name), m_Outside(system.FormsByName, events, name) {}

    WindowHandle Window() const override { return 4711; }
    TwipSize ClientSize() const override { return {m_Bounds.Width - 120, m_Bounds.Height - 400}; }
    void SetBounds(const TwipRect& bounds) override {
        m_Bounds = bounds;
        Remembered::SetBounds(bounds);
    }
    void SetWindowState(WindowStates state) override { Note("state " + std::to_string(static_cast<int>(state))); }
    void SetBorderStyle(BorderStyles style) override { Note("border " + std::to_string(static_cast<int>(style))); }
    void SetIcon(const PictureRef& picture) override { Note(picture ? "icon" : "own icon"); }
    IconNumber Icon() const override { return 77; }
    bool SetForeground() override {
        Note("foreground");
        return true;
    }
    void SetTopMost(bool onTop) override { Note(onTop ? "top-most" : "not top-most"); }
    void SetMousePointer(MousePointers pointer) override {
        Note("pointer " + std::to_string(static_cast<int>(pointer)));
    }
    std::int32_t PopupMenu(const std::vector<MenuRow>& rows, std::uint32_t flags) override {
        // The window may go while the menu is open.
        FakeWindowSystem& system = m_System;
        Note("menu " + std::to_string(flags));
        system.MenuRows = rows;
        if (system.WhileMenuIsOpen) system.WhileMenuIsOpen();
        return system.MenuAnswer;
    }
    void EndModes() override { Note("end modes"); }
    std::unique_ptr<BoxPeer> MakeBox(BoxPeer* box, bool hasBorder) override {
        return std::make_unique<Remembered<BoxPeer>>(m_System, Inside(box, hasBorder ? "frame" : "area"));
    }
    std::unique_ptr<WindowPeer> MakeLabel(BoxPeer* box, bool useMnemonic) override {
        return std::make_unique<Remembered<WindowPeer>>(m_System, Inside(box, useMnemonic ? "label" : "literal"));
    }
    std::unique_ptr<CommandButtonPeer> MakeCommandButton(BoxPeer* box, ButtonEvents& events) override {
        return std::make_unique<Push>(m_System, events, Inside(box, "button"));
    }
    std::unique_ptr<OptionButtonPeer> MakeOptionButton(BoxPeer* box, ButtonEvents& events) override {
        return std::make_unique<Option>(m_System, events, Inside(box, "option"));
    }
    std::unique_ptr<TextBoxPeer> MakeTextBox(TextBoxEvents& events, bool multiLine) override {
        const Text name = m_Name + ".box" + std::to_string(++m_BoxesMade);
        if (multiLine) m_System.Calls.push_back(name + ".lines");
        return std::make_unique<Box>(m_System, events, name);
    }
    std::unique_ptr<TimerPeer> MakeTimer(TimerEvents& events) override {
        return std::make_unique<Clockwork>(m_System, events, m_Name + ".timer" + std::to_string(++m_TimersMade));
    }

private:
    // "form1.button3", in a box "form1.area2.option3".
    Text Inside(BoxPeer* box, const char* kind) {
        const Text holder = box != nullptr ? static_cast<Remembered<BoxPeer>*>(box)->Name() : m_Name;
        return holder + "." + kind + std::to_string(++m_ControlsMade);
    }

    Reachable<FormEvents> m_Outside;
    TwipRect m_Bounds;
    int m_ControlsMade = 0;
    int m_BoxesMade = 0;
    int m_TimersMade = 0;
};

inline std::unique_ptr<FormPeer> FakeWindowSystem::MakeForm(FormEvents& events) {
    return std::make_unique<Frame>(*this, events, "form" + std::to_string(++m_Made));
}

}  // namespace tb
