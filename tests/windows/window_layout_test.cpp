// That every window of the program can be used, at whatever dots an inch the screen has, and leaves nothing behind.
#include "submissions/forms/frmSubmissions.h"
#include "submissions/win32/Win32DropTargets.h"
#include "windows/FlatMemory.h"
#include "windows/SkinnedWindows.h"

namespace tb {
namespace {

// What a user cannot read or reach: parts that stand outside of what holds them, or on each other, and texts that are
// longer than their place. A part may lie on a picture that is larger.
class WindowLayoutTest : public SkinnedWindows, protected Activities {
protected:
    bool StartActivity(const Text&, bool) override { return true; }
    void EndActivity(const Text&, bool) override {}

    static BOOL CALLBACK Collect(HWND window, LPARAM to) {
        if (IsWindowVisible(window)) reinterpret_cast<std::vector<HWND>*>(to)->push_back(window);
        return TRUE;
    }
    static RECT PlaceOf(HWND window) {
        RECT place{};
        GetWindowRect(window, &place);
        return place;
    }
    static Text Told(HWND window) {
        char name[32] = "";
        GetClassNameA(window, name, sizeof name);
        const RECT place = PlaceOf(window);
        return Text(name) + " " + std::to_string(place.left) + "," + std::to_string(place.top) + "-" +
               std::to_string(place.right) + "," + std::to_string(place.bottom);
    }
    static bool Holds(const RECT& outer, const RECT& inner) {
        return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
               inner.bottom <= outer.bottom;
    }
    static void ExpectApart(HWND form) {
        std::vector<HWND> parts;
        EnumChildWindows(form, Collect, reinterpret_cast<LPARAM>(&parts));
        EXPECT_GE(parts.size(), 3U);
        for (const HWND part : parts) {
            const RECT place = PlaceOf(part);
            EXPECT_TRUE(Holds(PlaceOf(GetParent(part)), place)) << Told(part) << " in " << Told(GetParent(part));
            for (const HWND other : parts) {
                RECT both{};
                const RECT beside = PlaceOf(other);
                if (other == part || GetParent(other) != GetParent(part) || Holds(place, beside)) continue;
                EXPECT_TRUE(Holds(beside, place) || !IntersectRect(&both, &place, &beside))
                    << Told(part) << " and " << Told(other);
            }
        }
    }
    // A place must be that much wider than the text on it.
    void ExpectRoom(const VisualControl& control, const Text& text, Twips beside) const {
        const TwipSize size = m_System.MeasureText(text, control.Font(), 0);
        EXPECT_LE(size.Width + beside, control.Width()) << text;
        EXPECT_LE(size.Height, control.Height()) << text;
    }
    void ExpectReadable(const ControlHost& host) const {
        for (const auto& control : host.Controls()) {
            if (const auto* const inner = dynamic_cast<ControlHost*>(control.get())) ExpectReadable(*inner);
            const auto* const visual = dynamic_cast<VisualControl*>(control.get());
            if (visual == nullptr || !visual->Visible()) continue;
            if (const auto* const label = dynamic_cast<Label*>(control.get())) {
                const TwipSize size = m_System.MeasureText(label->Caption(), label->Font(), label->Width());
                EXPECT_LE(size.Width, label->Width()) << label->Caption();
                EXPECT_LE(size.Height, label->Height()) << label->Caption();
            }
            if (const auto* const button = dynamic_cast<CommandButton*>(control.get())) {
                ExpectRoom(*button, PlainCaption(button->Caption()), 150);
            }
            if (const auto* const option = dynamic_cast<OptionButton*>(control.get())) {
                ExpectRoom(*option, option->Caption(), 255);
            }
            if (const auto* const skin = dynamic_cast<tbSkin*>(control.get())) {
                const Twips beside = skin->SkinNumber("CaptionTextLeft", 0) + skin->ucX1.Width();
                ExpectRoom(*skin, skin->Caption(), beside);
            }
        }
    }
    void ExpectInOrder(Form& form) const {
        SCOPED_TRACE(form.Name() + " " + form.Caption());
        ServeWaitingMessages();
        const TwipSize screen = m_System.ScreenSize();
        const RECT whole{0, 0, Pixels(screen.Width), Pixels(screen.Height)};
        EXPECT_TRUE(Holds(whole, PlaceOf(WindowOf(form)))) << Told(WindowOf(form));
        ExpectApart(WindowOf(form));
        ExpectReadable(form);
    }
};

TEST_F(WindowLayoutTest, EveryPartOfEveryWindowCanBeReadAndReached) {
    const Text words = "A word after the other is told to the user, who reads them all. ";
    Text all;
    while (all.size() < 20000) all += words;
    for (const Text& prompt : {Text("Sure?"), words + words + words, all, Text(20000, 'W')}) {
        Ask(prompt, MessageButtons::YesNoCancel | MessageButtons::Help | MessageButtons::Question,
            [this](Form& form) { ExpectInOrder(form); });
    }
    AskForCategory([&](Form& form) { ExpectInOrder(form); });
    const auto about = Made("frmAbout");
    about->Show();
    about->tbSkin1.SetCaption("About Trawlbeam");
    ExpectInOrder(*about);
    EXPECT_EQ(Pixels(about->tbSkin1.ucX1.Width()), Pixels(18 * 15)) << "scaled";
    EXPECT_EQ(about->tbSkin1.picCaption[0]->GetPicture()->Size, (PixelSize{Pixels(800 * 15), Pixels(28 * 15)}));
    about->Unload();
    Win32DropTargets targets(m_Failed);
    const auto panel = std::make_shared<frmSubmissions>(
        m_Forms, frmSubmissions::Parts{DB, {Program, Log, Web.Factory()}, *this, targets, [] {}});
    panel->Show();
    ExpectInOrder(*panel);
    panel->Unload();
}

TEST_F(WindowLayoutTest, OpeningsLeaveNothingBehind) {
    const auto open = [this] { AskForCategory([](Form&) {}); };
    for (int count = 0; count < 20; ++count) open();
    const std::int32_t handles = HandleCount::Live();
    const FlatMemory memory(GetCurrentProcess(), "kernel32.dll");
    for (int count = 0; count < 300; ++count) open();
    EXPECT_EQ(HandleCount::Live(), handles);
    memory.Expect("300 dialogs");
}

}  // namespace
}  // namespace tb
