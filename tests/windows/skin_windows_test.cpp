// Windows in the built skin as the user sees them: read from the screen pixel by pixel and beside what the skin
// document says, at whatever dots an inch the screen has.
#include <windows.h>

#include <gtest/gtest.h>

#include <cmath>

#include "base/numbers.h"
#include "components/tbXML/XmlParser.h"
#include "platform/win32/MessageLoop.h"
#include "platform/win32/Win32Files.h"
#include "platform/win32/Win32WindowText.h"
#include "submissions/SubmissionRig.h"
#include "submissions/forms/frmSubCat.h"
#include "submissions/forms/frmSubmissions.h"
#include "submissions/win32/OleSession.h"
#include "submissions/win32/Win32DropTargets.h"
#include "ui/dialogs/frmMessage.h"
#include "ui/skin/SkinPictures.h"
#include "ui/window/Timer.h"
#include "ui/window/win32/Win32WindowSystem.h"
#include "windows/FlatMemory.h"
#include "windows/ScreenPixels.h"

namespace tb {
namespace {

// A window that has nothing but its skin.
struct SkinnedForm : Form {
    SkinnedForm(Forms& forms, const App& app, LogSink& log, const Text& name)
        : Form(forms, name), tbSkin1(AddWith<tbSkin>("tbSkin1", app, log)) {
        LoadEvent.Connect([this] { tbSkin1.DressWindow(); });
        Move(1500, 1500, 4500, 1500);
    }
    tbSkin& tbSkin1;
};

class SkinWindowsTest : public ::testing::Test, protected SubmissionRig, protected Activities {
protected:
    SkinWindowsTest() {
        Win32Files disk;
        m_Document = ReadWholeFile(disk, TRAWLBEAM_SKIN);
        Program.SkinRoot = ParseXml(m_Document);
        // On no window.
        SetCursorPos(2, 2);
        m_Other.SetBorderStyle(0);
        m_Other.Move(12000, 12000, 1500, 750);
    }
    ~SkinWindowsTest() override {
        m_Other.Unload();
        EXPECT_EQ(m_Failures, Lines{});
        EXPECT_EQ(Log.Lines, Lines{});
        EXPECT_EQ(OwnedWindow::Live(), 0);
    }

    bool StartActivity(const Text&, bool) override { return true; }
    void EndActivity(const Text&, bool) override {}

    template <typename Condition>
    static bool Served(Condition done) {
        return Eventually([&] {
            ServeWaitingMessages();
            return done();
        });
    }
    static HWND WindowOf(const Form& form) { return ToHwnd(form.hWnd()); }
    std::int32_t Pixels(Twips twips) const { return m_System.Scale().ToPixels(twips); }
    std::shared_ptr<SkinnedForm> Made(const char* name) {
        return std::make_shared<SkinnedForm>(m_Forms, Program, Log, name);
    }
    // Shows it as the active window.
    void Show(Form& form) const {
        form.Show();
        ASSERT_TRUE(Served([&] {
            PutBack(form);
            if (!form.IsForeground()) form.SetForeground();
            return form.IsForeground();
        }));
    }
    // Where there is a window manager, a new window may be told the place that it had before the manager moved it.
    static void PutBack(Form& form) {
        RECT place{};
        GetWindowRect(WindowOf(form), &place);
        if (place.left == 0 && place.top == 0) form.Move(1500, 1500);
    }

    // The nearest value of an attribute around the bar of a window: there, at the window, at the root.
    Text Said(const Text& window, const char* name) const {
        const ElementPtr element = Program.SkinRoot->FindElementAttribute2("Name", window);
        for (const ElementPtr& level : {element->FindElement("Caption"), element, Program.SkinRoot}) {
            if (level && !level->FindAttributeValue(name).empty()) return level->FindAttributeValue(name);
        }
        return "0";
    }
    std::int32_t Number(const Text& window, const char* name) const { return ToInt32(Said(window, name)); }
    PictureRef PictureOf(const ElementPtr& element) const { return m_System.Decode(PictureBytes(element->Body())); }

    static void Put(HDC paper, const Picture& picture, int left, int top) {
        for (int y = 0; y < picture.Size.Height; ++y) {
            for (int x = 0; x < picture.Size.Width; ++x) {
                const std::uint32_t pixel = picture.Pixels.at(static_cast<size_t>(y * picture.Size.Width + x));
                const int alpha = static_cast<int>(pixel >> 24);
                if (alpha == 0) continue;
                const COLORREF below = GetPixel(paper, left + x, top + y);
                const auto mixed = [&](int shift, BYTE under) {
                    return (static_cast<int>(pixel >> shift & 0xFF) * alpha + under * (255 - alpha)) / 255;
                };
                SetPixel(paper, left + x, top + y,
                         RGB(mixed(16, GetRValue(below)), mixed(8, GetGValue(below)), mixed(0, GetBValue(below))));
            }
        }
    }
    static void Line(HDC paper, std::int32_t color, int left, int top, int right, int bottom) {
        SetDCPenColor(paper, static_cast<COLORREF>(color));
        MoveToEx(paper, left, top, nullptr);
        LineTo(paper, right, bottom);
    }
    static void Fill(HDC paper, std::int32_t color, int width, int height) {
        const RECT area{0, 0, width, height};
        SetDCBrushColor(paper, static_cast<COLORREF>(color));
        FillRect(paper, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    }
    static BYTE Lighter(BYTE channel, int percent) {
        return static_cast<BYTE>(std::min(255.0, std::nearbyint(channel * (100 + percent) / 100.0)));
    }

    // The bar that the document tells, without a title.
    void DrawBar(HDC paper, const Text& window, int width, bool active) const {
        const ElementPtr bar = Program.SkinRoot->FindElementAttribute2("Name", window)->FindElement("Caption");
        const int height = Pixels(Number(window, "CaptionHeight"));
        Fill(paper, Number(window, "CaptionBackColor"), width, height);
        Put(paper, *PictureOf(bar), 0, 0);
        const int factor = Number(window, "CaptionNonFocusFactor");
        for (int y = 0; y < height && !active; ++y) {
            for (int x = 0; x < width; ++x) {
                const COLORREF was = GetPixel(paper, x, y);
                if (was == 0xFFFFFF) continue;
                SetPixel(paper, x, y,
                         RGB(Lighter(GetRValue(was), factor), Lighter(GetGValue(was), factor),
                             Lighter(GetBValue(was), factor)));
            }
        }
        if (bar->FindAttributeValue("Close") == "1") {
            const ElementPtr globals = Program.SkinRoot->FindElementAttribute2("Name", "Globals");
            const PictureRef box = PictureOf(globals->FindElementAttribute2("Name", active ? "X" : "XInactive"));
            Put(paper, *box, width - box->Size.Width - 8, (height - 2 - box->Size.Height) / 2);
        }
        Line(paper, Number(window, "CaptionLineColor1"), 0, height - 2, width, height - 2);
        Line(paper, Number(window, "CaptionLineColor2"), 0, height - 1, width, height - 1);
    }

    // The whole window that the document tells, at the size that it has.
    ScreenPixels Told(const Form& form, bool active) const {
        const Text window = form.Name();
        const ElementPtr element = Program.SkinRoot->FindElementAttribute2("Name", window);
        const int width = Pixels(form.Width());
        const int height = Pixels(form.Height());
        const int corner = Number(window, "EdgeRadius");
        const pcMemDC surface(width, height);
        const HDC paper = surface.hDC();
        Fill(paper, Number(window, "FormBackColor"), width, height);
        if (const ElementPtr graphics = element->FindElement("Graphics")) {
            for (const ElementPtr& image : *graphics) {
                Put(paper, *PictureOf(image), Pixels(ToInt32(image->FindAttributeValue("Left"))),
                    Pixels(ToInt32(image->FindAttributeValue("Top"))));
            }
        }
        const Selected pen(paper, GetStockObject(DC_PEN));
        const Selected brush(paper, GetStockObject(NULL_BRUSH));
        SetDCPenColor(paper, static_cast<COLORREF>(Number(window, "Border2")));
        RoundRect(paper, 1, 1, width - 2, height - 2, corner - 1, corner - 1);
        Line(paper, Number(window, "CaptionTopColor2"), 1, 1, width - 2, 1);
        Line(paper, Number(window, "CaptionTopColor3"), 2, 2, width - 3, 2);
        SetDCPenColor(paper, static_cast<COLORREF>(Number(window, "Border1")));
        RoundRect(paper, 0, 0, width - 1, height - 1, corner, corner);
        Line(paper, Number(window, "CaptionTopColor1"), 0, 0, width - 1, 0);
        if (element->FindElement("Caption")) {
            const pcMemDC bar(width - 5, Pixels(Number(window, "CaptionHeight")));
            const Selected barPen(bar.hDC(), GetStockObject(DC_PEN));
            DrawBar(bar.hDC(), window, width - 5, active);
            bar.Draw(paper, 0, 0, 0, 0, 2, 3);
        }
        return ReadPixels(paper, {0, 0, width, height});
    }
    // Where pictures are scaled, half clear pixels are mixed with what lies beneath, and roundings add up.
    bool Agree(DWORD seen, DWORD told) const {
        const int most = Pixels(1440) == 96 ? 0 : 3;
        for (const int shift : {0, 8, 16}) {
            const int difference = static_cast<int>(seen >> shift & 0xFF) - static_cast<int>(told >> shift & 0xFF);
            if (std::abs(difference) > most) return false;
        }
        return true;
    }
    // The first pixel inside the outline that is not as told; empty when all are.
    Text FirstDifference(HWND window, const ScreenPixels& told, const OwnedRegion& outline) const {
        const ScreenPixels seen = SeenOf(window);
        for (LONG y = 0; y < told.Height; ++y) {
            for (LONG x = 0; x < told.Width; ++x) {
                if (Agree(seen.At(x, y), told.At(x, y))) continue;
                if (!PtInRegion(outline.Get(), static_cast<int>(x), static_cast<int>(y))) continue;
                char line[64];
                std::snprintf(line, sizeof line, "%ld, %ld: %06lX, told %06lX", x, y, seen.At(x, y), told.At(x, y));
                return line;
            }
        }
        return {};
    }
    void ExpectAsTold(Form& form, bool active) const {
        const ScreenPixels told = Told(form, active);
        const int corner = Number(form.Name(), "EdgeRadius");
        const OwnedRegion outline(
            CreateRoundRectRgn(0, 0, static_cast<int>(told.Width), static_cast<int>(told.Height), corner, corner));
        const OwnedRegion has(CreateRectRgn(0, 0, 1, 1));
        EXPECT_EQ(GetWindowRgn(WindowOf(form), has.Get()), COMPLEXREGION);
        // Equal regions may be made of other rectangles.
        EXPECT_EQ(CombineRgn(has.Get(), has.Get(), outline.Get(), RGN_XOR), NULLREGION) << form.Name();
        // What was drawn last may not have reached the screen.
        Served([&] {
            PutBack(form);
            return FirstDifference(WindowOf(form), told, outline).empty();
        });
        EXPECT_EQ(FirstDifference(WindowOf(form), told, outline), "") << form.Name() << " " << active;
    }

    // Opens a dialog, does that with it as soon as it stands there, and closes it.
    void WhileOpen(const std::function<void()>& open, const std::function<void(Form&)>& act) {
        Form clock(m_Forms, "frmClock");
        auto& timer = clock.Add<Timer>("tm");
        timer.SetInterval(10);
        timer.SetEnabled(true);
        timer.TimerEvent.Connect([&] {
            Form& top = *m_Forms.Loaded().back();
            if (&top == &clock || !top.Visible()) return;
            timer.SetEnabled(false);
            act(top);
            top.Unload(UnloadMode::User);
        });
        clock.Load();
        open();
        EXPECT_FALSE(timer.Enabled()) << "nothing was opened";
    }
    void Ask(const Text& prompt, std::int32_t buttons, const std::function<void(Form&)>& act) {
        const auto box = std::make_shared<frmMessage>(m_Forms, Program, Log);
        WhileOpen([&] { box->MsgBox({prompt, buttons, "Trawlbeam", {}}); }, act);
        box->Unload();
    }
    void AskForCategory(const std::function<void(Form&)>& act) {
        QualifiersDialog dialog(Program, Log);
        dialog.Setup(ParseXml("<C><C ID='2' NAME='Banking or Credit Card Spoof'/><C ID='3' NAME='Odd'/></C>"),
                     "http://www.some.example/with/a/path", "2", "3");
        SubCatWindows windows(m_Forms, Program, Log);
        WhileOpen([&] { windows.ShowModal(dialog, {1500, 1500}); }, act);
    }

    Text m_Document;
    Lines m_Failures;
    const std::function<void(const RuntimeError&)> m_Failed = [this](const RuntimeError& error) {
        m_Failures.push_back(error.Line());
    };
    OleSession m_Session;
    Win32WindowSystem m_System{{"TestForm", "TestBox"}, m_Failed};
    Forms m_Forms{&m_System};
    // One that takes the focus away.
    Form m_Other{m_Forms, "frmOther"};
};

TEST_F(SkinWindowsTest, OutlineBorderAndBarAreAsTold) {
    for (const char* name : {"frmAbout", "frmNotify", "frmSplash"}) {
        const auto form = Made(name);
        Show(*form);
        ExpectAsTold(*form, true);
        Show(m_Other);
        ASSERT_TRUE(Served([&] { return form->tbSkin1.CaptionState() != 1; }));
        ExpectAsTold(*form, false);
        Show(*form);
        ASSERT_TRUE(Served([&] { return form->tbSkin1.CaptionState() != -1; }));
        ExpectAsTold(*form, true);
        form->Unload();
    }
}

// With the display's own mouse, as the window manager takes its part in the move.
TEST_F(SkinWindowsTest, TheBarTakesTheWindowAlong) {
    const auto form = Made("frmAbout");
    int released = 0;
    form->tbSkin1.picCaption[0]->MouseDownEvent.Connect([&](MouseButton, const TwipPoint&) { ++released; });
    Show(*form);
    for (const POINT way : {POINT{70, 45}, POINT{0, 0}, POINT{-35, 20}}) {
        RECT before{};
        GetWindowRect(WindowOf(*form), &before);
        std::wstring line = L"xdotool mousemove " + std::to_wstring(before.left + 60) + L" " +
                            std::to_wstring(before.top + 15) + L" mousedown 1 sleep 0.2";
        for (int step = 0; step < 5 && way.x != 0; ++step) {
            line += L" mousemove_relative -- " + std::to_wstring(way.x / 5) + L" " + std::to_wstring(way.y / 5) +
                    L" sleep 0.02";
        }
        line += L" sleep 0.1 mouseup 1";
        STARTUPINFOW start{};
        start.cb = sizeof start;
        PROCESS_INFORMATION made{};
        const int presses = released;
        ASSERT_TRUE(CreateProcessW(L"Z:\\usr\\bin\\xdotool", line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                                   &start, &made));
        ASSERT_TRUE(Served([&] { return released > presses; }));
        const auto moved = [&] {
            RECT after{};
            GetWindowRect(WindowOf(*form), &after);
            return std::pair(after.left - before.left, after.top - before.top);
        };
        Served([&] { return moved() == std::pair(way.x, way.y); });
        EXPECT_EQ(moved(), std::pair(way.x, way.y));
    }
    form->Unload();
}

// A skin of another deployment or of the server: one colour, size, text and picture are other ones, and nothing else.
TEST_F(SkinWindowsTest, AnotherSkinChangesWhatItNames) {
    ElementPtr& skin = Program.SkinRoot;
    const auto see = [&](const Text& text) {
        SkinnedForm form(m_Forms, Program, Log, "frmAbout");
        auto& title = form.Add<Label>("Title");
        title.SetBackStyle(0);
        title.Move(300, 900, 3000, 300);
        auto& box = form.Add<PictureBox>("pic1");
        box.SetBackColor(0x2040C0);
        box.Move(300, 1500, 600, 600);
        Show(form);
        form.tbSkin1.SetCaption("About");
        ServeWaitingMessages();
        EXPECT_EQ(PartsOf(WindowOf(form), "STATIC").front().second, text);
        const HDC context = GetDC(WindowOf(form));
        const ScreenPixels seen = ReadPixels(context, {0, 0, Pixels(form.Width()), Pixels(form.Height())});
        ReleaseDC(WindowOf(form), context);
        return seen;
    };
    const ScreenPixels before = see("Trawlbeam");
    const Text logo =
        skin->FindElementAttribute2("Name", "Globals")->FindElementAttribute2("Name", "TrawlLogo")->Body();
    const Text graphics = "<Graphics><Image Left='3000' Top='1500'>" + logo + "</Image></Graphics>";
    const Text width = "<Component Name='pic1' Width='900'></Component>";

    skin->SetAttributeValue("CaptionLineColor1", "255");
    const ElementPtr about = skin->FindElementAttribute2("Name", "frmAbout");
    about->AddElement(ParseXml(graphics));
    about->FindElement("Components")->AddElement(ParseXml(width));
    about->FindElement("Components")->FindElementAttribute2("Name", "Title")->SetAttributeValue("Caption", "Another");
    const ScreenPixels after = see("Another");
    const LONG line = 3 + Pixels(Number("frmAbout", "CaptionHeight")) - 2;
    ScreenPixels rest = before;
    for (const RECT& area :
         {RECT{2, line, before.Width - 3, line + 1}, RECT{Pixels(300), Pixels(900), Pixels(3300), Pixels(1200)},
          RECT{Pixels(900), Pixels(1500), Pixels(1200), Pixels(2100)},
          RECT{Pixels(3000), Pixels(1500), Pixels(3960), Pixels(2460)}}) {
        EXPECT_TRUE(after.DiffersIn(before, area)) << area.left << " " << area.top;
        rest.TakeFrom(after, area);
    }
    EXPECT_TRUE(rest == after) << "something else changed";

    skin = ParseXml(m_Document);
    Program.Settings->ReplaceGlobals(
        "SKIN", ParseXml("<G CaptionLineColor1='255'><W Name='frmAbout'>" + graphics + "<Components>" + width +
                         "<Component Name='Title' Caption='Another'></Component></Components></W></G>"));
    EXPECT_TRUE(see("Another") == after) << "the server's skin does as the built-in one";
}

// What a user cannot read or reach: parts that stand outside of what holds them, or on each other, and texts that are
// longer than their place. A part may lie on a picture that is larger.
class LayoutTest : public SkinWindowsTest {
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

TEST_F(LayoutTest, EveryPartOfEveryWindowCanBeReadAndReached) {
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

TEST_F(SkinWindowsTest, OpeningsLeaveNothingBehind) {
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
