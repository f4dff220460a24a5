// Windows that are only remembered. A test looks at what a peer was told and plays the user through its events.
#pragma once

#include <cstdio>
#include <functional>
#include <map>
#include <utility>

#include "base/errors.h"
#include "base/numbers.h"
#include "fakes/RecordedSurface.h"
#include "ui/window/Peers.h"

namespace tb {

class FakeWindowSystem : public WindowSystem {
public:
    // What all windows were told, in order: "form1.text Caption", "form1.box1.lock", "form1.timer1.stop".
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
    std::map<Text, PointerEvents*> Pointers;

    std::vector<Screen> AllScreens{{{0, 0, 19200, 15360}, {0, 0, 19200, 15000}}};
    TwipPoint Mouse;
    bool IsHighContrast = false;
    // The form that is the foreground window, by its name.
    Text Foreground;
    // What is decoded: "WxH RRGGBB" is a picture of that size in one colour, "ICON" an icon; nothing else can be.
    PictureRef Decode(const Text& bytes) const override;

    std::unique_ptr<FormPeer> MakeForm(FormEvents& events, PointerEvents& pointer) override;
    TwipSize ScreenSize() const override { return {AllScreens[0].Whole.Width, AllScreens[0].Whole.Height}; }
    std::vector<Screen> Screens() const override { return AllScreens; }
    TwipPoint Pointer() const override { return Mouse; }
    TwipScale Scale() const override { return TwipScale(96); }
    // 90 twips a letter and 240 a line, whatever the font.
    TwipSize MeasureText(const Text& text, const Font& font, Twips width) const override;
    bool HighContrast() const override { return IsHighContrast; }
    Color Resolved(Color color) const override { return color.IsSystem() ? Color(color.Bits() & 0xFF) : color; }
    void ServeUntil(const std::function<bool()>& done) override {
        if (!done() && WhileModal) WhileModal();
    }

    // The calls since the last time, joined by ", ".
    Text Take() { return Join(std::exchange(Calls, {}), ", "); }

private:
    // Counts itself and notes what it is told.
    template <typename Base>
    class Noting : public Base {
    public:
        Noting(FakeWindowSystem& system, Text name) : m_System(system), m_Name(std::move(name)) { ++m_System.Live; }
        Noting(const Noting&) = delete;
        Noting& operator=(const Noting&) = delete;
        ~Noting() override { --m_System.Live; }
        const Text& Name() const { return m_Name; }

    protected:
        template <typename... Parts>
        void Note(const Parts&... parts) {
            m_System.Calls.push_back(m_Name + "." + InWords(parts...));
        }

        FakeWindowSystem& m_System;
        Text m_Name;
    };

    template <typename Base>
    class Remembered : public Noting<Base> {
    public:
        using Noting<Base>::Noting;
        using Noting<Base>::Note;
        ~Remembered() override { Note("gone"); }
        void SetBounds(const TwipRect& bounds) override {
            Note("bounds", bounds.Left, bounds.Top, bounds.Width, bounds.Height);
        }
        void SetVisible(bool visible) override { Note(visible ? "show" : "hide"); }
        void SetEnabled(bool enabled) override { Note(enabled ? "enable" : "disable"); }
        void SetText(const Text& text) override { Note("text", text); }
        void SetColors(const ControlColors& colors) override { Note("colors", colors.Back, colors.Fore); }
        void SetFont(const Font& font) override {
            Note("font", font.Name, ToText(font.Size) + (font.Bold ? " bold" : ""));
        }
        void SetFocus() override { Note("focus"); }
        void SetZOrder(bool toBack) override { Note(toBack ? "back" : "front"); }
        void SetToolTip(const Text& text) override { Note("tip", text); }
    };

    // With events that a test may raise, for as long as the window or timer exists.
    template <typename Base, auto All>
    class Heard : public Base {
    public:
        Heard(FakeWindowSystem& system, auto& events, const Text& name) : Base(system, name) {
            (system.*All)[name] = &events;
        }
        ~Heard() override { (this->m_System.*All).erase(this->m_Name); }
    };

    // A window that is drawn on.
    template <typename Base>
    class Drawn : public Heard<Remembered<Base>, &FakeWindowSystem::Pointers> {
    public:
        Drawn(FakeWindowSystem& system, PointerEvents& events, const Text& name) : Drawn::Heard(system, events, name) {}
        void SetBounds(const TwipRect& bounds) override {
            m_Bounds = bounds;
            Remembered<Base>::SetBounds(bounds);
        }
        void SetColors(const ControlColors& colors) override {
            if (colors.Back != std::exchange(m_Back, colors.Back)) m_Surface.SetGround(m_Back, m_Picture);
            Remembered<Base>::SetColors(colors);
        }
        tb::Surface& Surface() override { return m_Surface; }
        void SetPicture(const PictureRef& picture) override {
            this->Note(picture ? "picture" : "no picture");
            m_Picture = picture;
            m_Surface.SetGround(m_Back, m_Picture);
        }
        void SetCapture(bool capture) override { this->Note(capture ? "capture" : "release"); }

    protected:
        virtual TwipSize Inner() const { return {m_Bounds.Width, m_Bounds.Height}; }
        TwipRect m_Bounds;

    private:
        PixelSize SizeInPixels() const {
            const TwipScale scale(96);
            return {scale.ToPixels(Inner().Width), scale.ToPixels(Inner().Height)};
        }

        Color m_Back;
        PictureRef m_Picture;
        RecordedSurface m_Surface{[this](const Text& call) { this->Note(call); }, [this] { return SizeInPixels(); }};
    };

    struct Area : Drawn<BoxPeer> {
        using Drawn::Drawn;
        void SetTabStop(bool tabStop) override { Note(tabStop ? "stop" : "no stop"); }
    };

    struct Words : Heard<Remembered<LabelPeer>, &FakeWindowSystem::Pointers> {
        using Heard::Heard;
        void SetTransparent(bool transparent) override { Note(transparent ? "transparent" : "opaque"); }
        void SetAlignment(std::int32_t alignment) override { Note("align", alignment); }
    };

    struct PaintedImage : Noting<ImagePeer> {
        using Noting::Noting;
        void SetVisible(bool visible) override { Note(visible ? "show" : "hide"); }
        void SetZOrder(bool toBack) override { Note(toBack ? "back" : "front"); }
        void SetBounds(const TwipRect& bounds) override {
            Note("bounds", bounds.Left, bounds.Top, bounds.Width, bounds.Height);
        }
        void SetPicture(const PictureRef& picture, bool stretch) override {
            Note((picture ? Text("picture") : Text("no picture")) + (stretch ? " stretched" : ""));
        }
    };

    struct PaintedLine : Noting<LinePeer> {
        using Noting::Noting;
        void SetVisible(bool visible) override { Note(visible ? "show" : "hide"); }
        void SetZOrder(bool toBack) override { Note(toBack ? "back" : "front"); }
        void SetEnds(const TwipPoint& from, const TwipPoint& to) override { Note("ends", from.X, from.Y, to.X, to.Y); }
        void SetColor(Color color) override { Note("color", color); }
    };

    struct Box : Heard<Remembered<TextBoxPeer>, &FakeWindowSystem::Boxes> {
        using Heard::Heard;
        void SetLocked(bool locked) override { Note(locked ? "lock" : "unlock"); }
        std::int32_t SelStart() const override { return Start; }
        void SetSelStart(std::int32_t position) override { Start = position; }
        std::int32_t Start = 0;
    };

    struct Push : Heard<Remembered<CommandButtonPeer>, &FakeWindowSystem::Buttons> {
        using Heard::Heard;
        void SetDefault(bool isDefault) override { Note(isDefault ? "default" : "not default"); }
        void SetCancel(bool isCancel) override { Note(isCancel ? "cancel" : "not cancel"); }
    };

    struct Option : Heard<Remembered<OptionButtonPeer>, &FakeWindowSystem::Buttons> {
        using Heard::Heard;
        void SetSelected(bool selected) override { Note(selected ? "select" : "unselect"); }
        void SetTabStop(bool tabStop) override { Note(tabStop ? "stop" : "no stop"); }
    };

    struct Clockwork : Heard<Noting<TimerPeer>, &FakeWindowSystem::Timers> {
        using Heard::Heard;
        void Start(std::int32_t milliseconds) override { Note("start", milliseconds); }
        void Stop() override { Note("stop"); }
    };

    class Frame;
    int m_Made = 0;
};

class FakeWindowSystem::Frame : public Drawn<FormPeer> {
public:
    Frame(FakeWindowSystem& system, FormEvents& events, PointerEvents& pointer, const Text& name)
        : Drawn(system, pointer, name) {
        system.FormsByName[name] = &events;
    }
    ~Frame() override { m_System.FormsByName.erase(m_Name); }

    WindowHandle Window() const override { return 4711; }
    // A frame takes 120 by 400.
    TwipSize ClientSize() const override { return Inner(); }
    void SetWindowState(WindowStates state) override { Note("state", static_cast<int>(state)); }
    void SetBorderStyle(BorderStyles style) override {
        m_HasFrame = style != BorderStyles::None;
        Note("border", static_cast<int>(style));
    }
    void SetIcon(const PictureRef& picture) override { Note(picture ? "icon" : "own icon"); }
    IconNumber Icon() const override { return 77; }
    bool SetForeground() override {
        Note("foreground");
        return true;
    }
    bool IsForeground() const override { return m_System.Foreground == m_Name; }
    void Flash() override { Note("flash"); }
    void ShowInactive() override { Note("show inactive"); }
    void SetTopMost(bool onTop, bool activate) override {
        Note((onTop ? Text("top-most") : Text("not top-most")) + (activate ? " active" : ""));
    }
    void SetOwner(FormPeer* owner) override {
        Note(owner != nullptr ? "owner " + static_cast<Frame*>(owner)->Name() : "no owner");
    }
    void SetInTaskList(bool inTaskList) override { Note(inTaskList ? "listed" : "unlisted"); }
    void SetRoundRegion(PixelPoint from, PixelPoint to, std::int32_t corner) override {
        Note("region", from, to, corner);
    }
    void SetLayering(const Layering& layering) override {
        const Text clear = layering.ClearColor ? " clear " + InWords(*layering.ClearColor) : Text();
        Note("alpha", InWords(layering.Alpha) + clear);
    }
    void DragByCaption() override { Note("drag"); }
    void SetMousePointer(MousePointers pointer) override { Note("pointer", static_cast<int>(pointer)); }
    std::int32_t PopupMenu(const std::vector<MenuRow>& rows, std::uint32_t flags) override {
        // The window may go while the menu is open.
        FakeWindowSystem& system = m_System;
        Note("menu", flags);
        system.MenuRows = rows;
        if (system.WhileMenuIsOpen) system.WhileMenuIsOpen();
        return system.MenuAnswer;
    }
    void EndModes() override { Note("end modes"); }
    std::unique_ptr<BoxPeer> MakeBox(BoxPeer* box, PointerEvents& events, bool hasBorder) override {
        return std::make_unique<Area>(m_System, events, Inside(box, hasBorder ? "frame" : "area"));
    }
    std::unique_ptr<LabelPeer> MakeLabel(BoxPeer* box, PointerEvents& events, bool useMnemonic) override {
        return std::make_unique<Words>(m_System, events, Inside(box, useMnemonic ? "label" : "literal"));
    }
    std::unique_ptr<ImagePeer> MakeImage(BoxPeer* box) override {
        return std::make_unique<PaintedImage>(m_System, Inside(box, "image"));
    }
    std::unique_ptr<LinePeer> MakeLine(BoxPeer* box) override {
        return std::make_unique<PaintedLine>(m_System, Inside(box, "line"));
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

protected:
    TwipSize Inner() const override {
        return m_HasFrame ? TwipSize{m_Bounds.Width - 120, m_Bounds.Height - 400}
                          : TwipSize{m_Bounds.Width, m_Bounds.Height};
    }

private:
    // "form1.button3", in a box "form1.area2.option3".
    Text Inside(BoxPeer* box, const char* kind) {
        const Text holder = box != nullptr ? static_cast<Area*>(box)->Name() : m_Name;
        return holder + "." + kind + std::to_string(++m_ControlsMade);
    }

    bool m_HasFrame = true;
    int m_ControlsMade = 0;
    int m_BoxesMade = 0;
    int m_TimersMade = 0;
};

inline std::unique_ptr<FormPeer> FakeWindowSystem::MakeForm(FormEvents& events, PointerEvents& pointer) {
    return std::make_unique<Frame>(*this, events, pointer, "form" + std::to_string(++m_Made));
}

inline TwipSize FakeWindowSystem::MeasureText(const Text& text, const Font&, Twips width) const {
    constexpr Twips Letter = 90;
    constexpr Twips LineHeight = 240;
    const std::int32_t most = width > 0 ? std::max(1, width / Letter) : INT32_MAX;
    TwipSize size;
    for (const TextView part : SplitViews(text, '\n')) {
        const auto letters = static_cast<std::int32_t>(part.size() - (part.ends_with('\r') ? 1 : 0));
        size.Width = std::max(size.Width, Letter * std::min(letters, most));
        size.Height += LineHeight * std::max(1, letters / most + (letters % most != 0 ? 1 : 0));
    }
    return size;
}

inline PictureRef FakeWindowSystem::Decode(const Text& bytes) const {
    if (bytes == "ICON") return std::make_shared<Picture>(Picture{bytes, PictureKind::Icon, {32, 32}, {}});
    int width = 0;
    int height = 0;
    unsigned int color = 0;
    if (std::sscanf(bytes.c_str(), "%dx%d %x", &width, &height, &color) != 3) return nullptr;
    const auto count = static_cast<size_t>(width) * static_cast<size_t>(height);
    return std::make_shared<Picture>(
        Picture{bytes, PictureKind::Gif, {width, height}, std::vector<std::uint32_t>(count, 0xFF000000U | color)});
}

}  // namespace tb
