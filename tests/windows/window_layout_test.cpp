// That every window of the program can be used, at whatever dots an inch the screen has.
#include "windows/SkinnedWindows.h"

namespace tb {
namespace {

// What a user cannot read or reach: parts that stand outside of what holds them, or on each other, and texts that are
// longer than their place. A part may lie on a picture that is larger.
class WindowLayoutTest : public SkinnedWindows {
protected:
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
    // A place must be that much wider than the text on it, which is broken where it is wider than `most`.
    void ExpectRoom(const VisualControl& control, const Text& text, Twips beside, Twips most = 0) const {
        const TwipSize size = m_System.MeasureText(text, control.Font(), most);
        EXPECT_LE(size.Width + beside, control.Width()) << text;
        EXPECT_LE(size.Height, control.Height()) << text;
    }
    void ExpectReadable(const ControlHost& host) const {
        for (const auto& control : host.Controls()) {
            if (const auto* const inner = dynamic_cast<ControlHost*>(control.get())) ExpectReadable(*inner);
            const auto* const visual = dynamic_cast<VisualControl*>(control.get());
            if (visual == nullptr || !visual->Visible()) continue;
            if (const auto* const label = dynamic_cast<Label*>(control.get())) {
                ExpectRoom(*label, label->Caption(), 0, label->Width());
            } else if (const auto* const button = dynamic_cast<CommandButton*>(control.get())) {
                ExpectRoom(*button, PlainCaption(button->Caption()), 150);
            } else if (const auto* const option = dynamic_cast<OptionButton*>(control.get())) {
                ExpectRoom(*option, option->Caption(), 255);
            } else if (const auto* const skin = dynamic_cast<tbSkin*>(control.get())) {
                ExpectRoom(*skin, skin->Caption(), skin->SkinNumber("CaptionTextLeft", 0) + skin->ucX1.Width());
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
    const auto look = [this] { return AndClose([this](Form& form) { ExpectInOrder(form); }); };
    const Text words = "A word after the other is told to the user, who reads them all. ";
    Text all;
    while (all.size() < 20000) all += words;
    for (const Text& prompt : {Text("Sure?"), words + words + words, all, Text(20000, 'W')}) {
        Ask(Program, prompt, MessageButtons::YesNoCancel | MessageButtons::Help | MessageButtons::Question, look());
    }
    AskForCategory(look());
    const auto about = Made("frmAbout");
    about->Show();
    about->tbSkin1.SetCaption("About Trawlbeam");
    ExpectInOrder(*about);
    EXPECT_EQ(Pixels(about->tbSkin1.ucX1.Width()), Pixels(18 * 15)) << "scaled";
    EXPECT_EQ(about->tbSkin1.picCaption[0]->GetPicture()->Size, (PixelSize{Pixels(800 * 15), Pixels(28 * 15)}));
    about->Unload();
    const auto panel = Panel();
    panel->Show();
    ExpectInOrder(*panel);
    panel->Unload();
}

}  // namespace
}  // namespace tb
