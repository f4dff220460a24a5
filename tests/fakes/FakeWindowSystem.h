// Windows that are only remembered. A test looks at what a peer was told and plays the user through its events.
#pragma once

#include <functional>
#include <map>

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
    // The next form cannot be made.
    bool Refuses = false;

    class Box;
    class Clockwork;
    class Frame;
    class Area;
    class Sign;
    class Push;
    class Option;
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
    Text Take() {
        const Text joined = Join(Calls, ", ");
        Calls.clear();
        return joined;
    }

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

    protected:
        void Note(const Text& call) { m_System.Calls.push_back(m_Name + "." + call); }

        FakeWindowSystem& m_System;
        Text m_Name;
    };

    int m_Made = 0;
};

class FakeWindowSystem::Box : public Remembered<TextBoxPeer> {
public:
    Box(FakeWindowSystem& system, TextBoxEvents& events, const Text& name) : Remembered(system, name) {
        m_System.Boxes[m_Name] = &events;
    }
    ~Box() override { m_System.Boxes.erase(m_Name); }

    void SetLocked(bool locked) override { Note(locked ? "lock" : "unlock"); }
    std::int32_t SelStart() const override { return m_SelStart; }
    void SetSelStart(std::int32_t position) override { m_SelStart = position; }

private:
    std::int32_t m_SelStart = 0;
};

class FakeWindowSystem::Area : public Remembered<BoxPeer> {
public:
    using Remembered::Remembered;
    const Text& Name() const { return m_Name; }
};

class FakeWindowSystem::Sign : public Remembered<WindowPeer> {
public:
    using Remembered::Remembered;
};

class FakeWindowSystem::Push : public Remembered<CommandButtonPeer> {
public:
    Push(FakeWindowSystem& system, ButtonEvents& events, const Text& name) : Remembered(system, name) {
        m_System.Buttons[m_Name] = &events;
    }
    ~Push() override { m_System.Buttons.erase(m_Name); }

    void SetDefault(bool isDefault) override { Note(isDefault ? "default" : "not default"); }
    void SetCancel(bool isCancel) override { Note(isCancel ? "cancel" : "not cancel"); }
};

class FakeWindowSystem::Option : public Remembered<OptionButtonPeer> {
public:
    Option(FakeWindowSystem& system, ButtonEvents& events, const Text& name) : Remembered(system, name) {
        m_System.Buttons[m_Name] = &events;
    }
    ~Option() override { m_System.Buttons.erase(m_Name); }

    void SetSelected(bool selected) override { Note(selected ? "select" : "unselect"); }
    void SetTabStop(bool tabStop) override { Note(tabStop ? "stop" : "no stop"); }
};

class FakeWindowSystem::Clockwork : public TimerPeer {
public:
    Clockwork(FakeWindowSystem& system, TimerEvents& events, const Text& name) : m_System(system), m_Name(name) {
        ++m_System.Live;
        m_System.Timers[m_Name] = &events;
    }
    Clockwork(const Clockwork&) = delete;
    Clockwork& operator=(const Clockwork&) = delete;
    ~Clockwork() override {
        --m_System.Live;
        m_System.Timers.erase(m_Name);
    }

    void Start(std::int32_t milliseconds) override {
        m_System.Calls.push_back(m_Name + ".start " + std::to_string(milliseconds));
    }
    void Stop() override { m_System.Calls.push_back(m_Name + ".stop"); }

private:
    FakeWindowSystem& m_System;
    Text m_Name;
};

class FakeWindowSystem::Frame : public Remembered<FormPeer> {
public:
    Frame(FakeWindowSystem& system, FormEvents& events, const Text& name) : Remembered(system, name) {
        m_System.FormsByName[m_Name] = &events;
    }
    ~Frame() override { m_System.FormsByName.erase(m_Name); }

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
    std::unique_ptr<BoxPeer> MakeBox(BoxPeer* box, bool hasBorder) override {
        return std::make_unique<Area>(m_System, Inside(box, hasBorder ? "frame" : "area"));
    }
    std::unique_ptr<WindowPeer> MakeLabel(BoxPeer* box, bool useMnemonic) override {
        return std::make_unique<Sign>(m_System, Inside(box, useMnemonic ? "label" : "literal"));
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
        const Text holder = box != nullptr ? static_cast<Area*>(box)->Name() : m_Name;
        return holder + "." + kind + std::to_string(++m_ControlsMade);
    }

    TwipRect m_Bounds;
    int m_ControlsMade = 0;
    int m_BoxesMade = 0;
    int m_TimersMade = 0;
};

inline std::unique_ptr<FormPeer> FakeWindowSystem::MakeForm(FormEvents& events) {
    if (Refuses) throw Error(ErrorNumber::Internal);
    return std::make_unique<Frame>(*this, events, "form" + std::to_string(++m_Made));
}

}  // namespace tb
