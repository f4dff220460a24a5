// Forms and controls that are drawn, as real windows: what is seen of them, and what mouse and keys do on them.
#include <gtest/gtest.h>

#include <thread>

#include "platform/win32/MessageLoop.h"
#include "platform/win32/Win32WindowText.h"
#include "ui/window/ButtonLook.h"
#include "ui/window/CommandButton.h"
#include "ui/window/Form.h"
#include "ui/window/Image.h"
#include "ui/window/Label.h"
#include "ui/window/Line.h"
#include "ui/window/OptionButton.h"
#include "ui/window/PictureBox.h"
#include "ui/window/win32/Win32WindowSystem.h"
#include "ui/window/win32/pcMemDC.h"
#include "windows/Eventually.h"

namespace tb {
namespace {

constexpr Color Red{0x0000FF};
constexpr Color Green{0x00FF00};
constexpr Color Blue{0xFF0000};

// 3 by 2 pixels: red, green, clear; clear, green, red.
const Text SmallGif(
    "GIF89a\3\0\2\0\x81\0\0\xFF\0\0\0\xFF\0\0\0\xFF\0\0\0\x21\xF9\4\1\0\0\2\0\x2C\0\0\0\0\3\0\2\0\0\2\5\4\x43\x51\x0C\x51"
    "\0\x3B",
    52);

class DrawnWindowTest : public ::testing::Test {
protected:
    DrawnWindowTest() {
        m_Form.SetBorderStyle(0);
        m_Form.SetBackColor(Blue);
        Place(m_Form, 100, 100, 200, 150);
    }
    ~DrawnWindowTest() override {
        m_Form.Unload();
        EXPECT_EQ(m_Failures, std::vector<Text>{});
        EXPECT_EQ(OwnedWindow::Live(), 0);
    }

    // Places are pixels here.
    Twips Of(std::int32_t pixels) const { return m_System.Scale().ToTwips(pixels); }
    void Place(VisualControl& control, std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
        control.Move(Of(left), Of(top), Of(width), Of(height));
    }
    // A picture of one colour.
    static PictureRef Plain(std::int32_t width, std::int32_t height, std::uint32_t pixel) {
        return std::make_shared<Picture>(
            Picture{{}, PictureKind::Bmp, {width, height}, std::vector<std::uint32_t>(static_cast<size_t>(width * height), pixel)});
    }
    static HWND WindowOf(const Form& form) { return ToHwnd(form.hWnd()); }
    HWND Window() const { return WindowOf(m_Form); }
    // What a window, with what stands on it, shows at a place inside it.
    static Color Seen(HWND window, std::int32_t x, std::int32_t y) {
        ServeWaitingMessages();
        POINT place{x, y};
        const HWND child = ChildWindowFromPointEx(window, place, CWP_SKIPINVISIBLE);
        if (child != window) {
            MapWindowPoints(window, child, &place, 1);
            return Seen(child, static_cast<std::int32_t>(place.x), static_cast<std::int32_t>(place.y));
        }
        return Shown(window, x, y);
    }
    static Color Shown(HWND window, std::int32_t x, std::int32_t y) {
        const HDC context = GetDC(window);
        const Color color(static_cast<std::int32_t>(GetPixel(context, x, y)));
        ReleaseDC(window, context);
        return color;
    }
    Color Seen(std::int32_t x, std::int32_t y) const { return Seen(Window(), x, y); }
    HWND Child(const char* className, int index = 0) const {
        HWND child = nullptr;
        for (; index >= 0; --index) child = FindWindowExA(Window(), child, className, nullptr);
        return child;
    }
    template <typename Condition>
    static bool Served(Condition done) {
        return Eventually([&] {
            ServeWaitingMessages();
            return done();
        });
    }

    std::vector<Text> m_Failures;
    Win32WindowSystem m_System{{"TestForm", "TestBox"},
                               [this](const RuntimeError& error) { m_Failures.push_back(error.Line()); }};
    Forms m_Forms{&m_System};
    Form m_Form{m_Forms, "frmDrawn"};
};

TEST_F(DrawnWindowTest, ASurfaceIsDrawnOnByPixelsAndKeepsThem) {
    m_Form.Load();
    Surface& surface = *m_Form.Surface();
    EXPECT_EQ(surface.Size(), (PixelSize{200, 150}));
    surface.Line({10, 10}, {20, 10}, Red);
    surface.RoundRect({30, 30}, {60, 50}, 8, Green);
    surface.Fill({70, 10, 5, 5}, Red);
    surface.SetPixel({199, 149}, Red);
    surface.SetPixel({200, 0}, Red);
    surface.Fill({-9, -9, INT32_MAX, 10}, Green);
    const std::vector<std::pair<PixelPoint, Color>> pixels = {
        {{10, 10}, Red},   {{19, 10}, Red},  {{20, 10}, Blue},  {{30, 40}, Green},
        {{30, 30}, Blue},  {{40, 40}, Blue}, {{59, 40}, Green}, {{60, 40}, Blue},
        {{74, 14}, Red},   {{75, 15}, Blue}, {{199, 149}, Red}, {{0, 0}, Green},
        {{200, 0}, Surface::Outside}, {{0, -1}, Surface::Outside}};
    for (const auto& [at, color] : pixels) EXPECT_EQ(surface.GetPixel(at).Bits(), color.Bits()) << at.X << " " << at.Y;

    m_Form.Show();
    EXPECT_EQ(Shown(Window(), 19, 10), Red) << "without a message of its own in between";
    m_Form.Hide();
    m_Form.Show();
    m_Form.SetBackColor(Blue);
    m_Form.Move(0, 0, Of(300), Of(250));
    EXPECT_EQ(Seen(19, 10), Red);
    EXPECT_EQ(Seen(299, 249), Blue);
    EXPECT_EQ(surface.Size(), (PixelSize{300, 250}));
    surface.SetPixel({299, 249}, Red);
    EXPECT_EQ(Seen(299, 249), Red);
    EXPECT_EQ(surface.Image()->Pixels.at(10 * 300 + 19), 0xFFFF0000U);
    m_Form.SetWindowState(1);
    m_Form.SetWindowState(0);
    EXPECT_EQ(Seen(19, 10), Red) << "a minimised window has no room";
    m_Form.SetPicture(Plain(20, 20, 0xFF00FF00));
    EXPECT_EQ(Seen(19, 10), Green);
    EXPECT_EQ(Seen(20, 10), Blue);
    m_Form.SetBackColor(Red);
    EXPECT_EQ(Seen(299, 249), Red);
}

// Part of a picture, by the surface that holds copies of it.
TEST_F(DrawnWindowTest, AMemoryContextCopiesAPart) {
    pcMemDC source = pcMemDC::CreateFromPicture(*Plain(4, 3, 0xFFFF0000));
    const pcMemDC target(8, 8);
    EXPECT_TRUE(source.Draw(target.hDC(), 0, 0, 0, 2, 1, 1));
    EXPECT_EQ(GetPixel(target.hDC(), 4, 2), 0x0000FFU);
    for (const auto& [x, y] : {std::pair(0, 1), std::pair(5, 1), std::pair(4, 3)}) {
        EXPECT_EQ(GetPixel(target.hDC(), x, y), 0U);
    }
    EXPECT_EQ(pcMemDC(0, 5).Width(), 0);
    source = pcMemDC(2, 2);
    EXPECT_EQ(source.Width(), 2);
}

TEST_F(DrawnWindowTest, ImageFilesAreDecodedOrRefused) {
    const Text bmp("BM\x3A\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\1\0\0\0\1\0\0\0\1\0\x18\0\0\0\0\0\4\0\0\0"
                   "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x80\0\xFF\0", 58);
    const Text table = Text("\0\x14", 2);
    const Text codes = Text("\1", 1) + Text(16, '\0');
    const Text jpeg = Text("\xFF\xD8\xFF\xDB\0\x43\0", 7) + Text(64, '\1') +
                      Text("\xFF\xC0\0\x0B\x08\0\x08\0\x08\1\1\x11\0", 13) + "\xFF\xC4" + table + Text(1, '\0') + codes +
                      "\xFF\xC4" + table + '\x10' + codes + Text("\xFF\xDA\0\x08\1\1\0\0\x3F\0\x3F\xFF\xD9", 13);
    // 16 by 16 pixels of 1 bit: white where the mask lets it be seen, which is the lower half.
    const Text icon = Text("\0\0\1\0\1\0\x10\x10\2\0\1\0\1\0\xB0\0\0\0\x16\0\0\0", 22) +
                      Text("\x28\0\0\0\x10\0\0\0\x20\0\0\0\1\0\1\0", 16) + Text(24, '\0') +
                      Text("\0\0\0\0\xFF\xFF\xFF\0", 8) + Text(32, '\xFF') + Text(32, '\0') + Text(32, '\0') + Text(32, '\xFF');
    struct Row {
        const Text& File;
        PixelSize Size;
        std::uint32_t First;
        std::uint32_t Last;
    };
    for (const Row& row : {Row{SmallGif, {3, 2}, 0xFFFF0000, 0xFFFF0000}, Row{bmp, {1, 1}, 0xFFFF0080, 0xFFFF0080},
                           Row{jpeg, {8, 8}, 0xFF808080, 0xFF808080}, Row{icon, {16, 16}, 0, 0xFFFFFFFF}}) {
        const PictureRef picture = m_System.Decode(row.File);
        ASSERT_TRUE(picture) << row.File.substr(0, 6);
        if (m_System.Scale().ToPixels(1440) == 96) {
            EXPECT_EQ(picture->Size, row.Size);
            EXPECT_EQ(picture->Pixels.front(), row.First) << row.File.substr(0, 6);
            EXPECT_EQ(picture->Pixels.back(), row.Last) << row.File.substr(0, 6);
        }
        for (size_t length = 0; length < row.File.size(); length += 5) {
            const PictureRef part = m_System.Decode(row.File.substr(0, length));
            EXPECT_TRUE(!part || part->Size == picture->Size);
        }
    }
    EXPECT_EQ(m_System.Decode("\x89PNG\r\n\x1A\n"), nullptr);
    Text lies = SmallGif;
    lies[6] = lies[8] = '\x70';
    lies[7] = lies[9] = '\x70';
    EXPECT_EQ(m_System.Decode(lies), nullptr);
}

TEST_F(DrawnWindowTest, ImagesLinesAndLabelsShowWhatLiesBeneath) {
    auto& box = m_Form.Add<PictureBox>("pic");
    Place(box, 20, 20, 100, 80);
    box.SetBackColor(Blue);
    auto& below = m_Form.Add<Image>("img", 1, &box);
    auto& above = m_Form.Add<Image>("img", 0, &box);
    auto& line = m_Form.Add<Line>("lin", NoIndex, &box);
    auto& label = m_Form.Add<Label>("lbl", NoIndex, &box);
    below.SetPicture(Plain(40, 40, 0xFFFF0000));
    above.SetPicture(m_System.Decode(SmallGif));
    below.ZOrder(0);
    line.SetEnds({0, Of(50)}, {Of(100), Of(50)});
    line.SetBorderColor(Green);
    Place(label, 0, 0, 30, 60);
    label.SetBackStyle(0);
    label.SetCaption("");
    m_Form.Show();
    const auto seen = [&](std::int32_t x, std::int32_t y) { return Seen(x + 20, y + 20); };
    EXPECT_EQ(seen(35, 0), Red);
    EXPECT_EQ(seen(1, 0), Red) << "made first, so in front, beneath a label that shows it";
    below.ZOrder(1);
    EXPECT_EQ(seen(1, 0), Green) << "the label follows what lies beneath it";
    EXPECT_EQ(seen(2, 0), Red) << "clear";
    EXPECT_EQ(seen(5, 50), Green);
    EXPECT_EQ(seen(41, 0), Blue);
    label.Move(Of(60));
    EXPECT_EQ(seen(65, 0), Blue);
    EXPECT_EQ(seen(65, 50), Green) << "nothing was carried along";
    label.SetBackStyle(1);
    label.SetBackColor(Red);
    EXPECT_EQ(seen(65, 50), Red);
    below.SetVisible(false);
    EXPECT_EQ(seen(35, 0), Blue);
    EXPECT_EQ(seen(0, 0), Red);
    below.SetStretch(true);
    below.SetVisible(true);
    Place(below, 0, 60, 90, 20);
    EXPECT_EQ(seen(55, 70), Red);
    Place(below, INT32_MIN / 32, -5, INT32_MAX / 32, 1000000);
    EXPECT_EQ(seen(55, 79), Blue) << "ends left of it";
}

TEST_F(DrawnWindowTest, ALabelBreaksCutsAndGreysItsText) {
    auto& label = m_Form.Add<Label>("lbl");
    Place(label, 0, 0, 60, 60);
    label.SetBackColor(Red);
    label.SetForeColor(0);
    label.SetAlignment(1);
    label.SetCaption(Text(3000000, 'M'));
    m_Form.Show();
    const auto dark = [&](std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
        int found = 0;
        for (std::int32_t y = top; y < top + height; ++y) {
            for (std::int32_t x = left; x < left + width; ++x) found += Seen(x, y).Red() < 100 ? 1 : 0;
        }
        return found;
    };
    const TwipSize line = m_System.MeasureText("M", label.Font(), 0);
    const std::int32_t height = m_System.Scale().ToPixels(line.Height);
    EXPECT_GT(dark(0, height, 60, height), 20) << "a word of that length goes on in the next line";
    label.SetCaption("i");
    EXPECT_EQ(dark(0, 0, 40, 60), 0);
    EXPECT_GT(dark(40, 0, 20, 60), 3);
    EXPECT_EQ(GetWindowTextLengthW(Child("STATIC")), 1);
    label.SetEnabled(false);
    EXPECT_EQ(dark(0, 0, 60, 60), 0);
    const Text words = "one two three";
    const TwipSize all = m_System.MeasureText(words, {}, 0);
    const TwipSize narrow = m_System.MeasureText(words, {}, all.Width / 2);
    EXPECT_GE(narrow.Height, 2 * all.Height);
    EXPECT_LE(m_System.MeasureText(Text(200, 'M'), {}, all.Width).Width, all.Width);
    EXPECT_GT(m_System.MeasureText(words, {"Tahoma", 16, true, false, false}, 0).Width, all.Width);
}

TEST_F(DrawnWindowTest, AFormTakesStylesRegionAndTranslucence) {
    m_Form.Load();
    const auto styles = [&](int index) { return static_cast<DWORD>(GetWindowLongPtrW(Window(), index)); };
    EXPECT_EQ(styles(GWL_STYLE) & (WS_SYSMENU | WS_MINIMIZEBOX | WS_CAPTION), WS_SYSMENU | WS_MINIMIZEBOX);
    EXPECT_NE(styles(GWL_EXSTYLE) & WS_EX_APPWINDOW, 0U);
    m_Form.SetShowInTaskbar(false);
    EXPECT_EQ(styles(GWL_STYLE) & (WS_SYSMENU | WS_MINIMIZEBOX), 0U);
    EXPECT_EQ(styles(GWL_EXSTYLE) & (WS_EX_APPWINDOW | WS_EX_TOOLWINDOW), DWORD{WS_EX_TOOLWINDOW});
    m_Form.SetRoundRegion({0, 0}, {200, 150}, 9);
    RECT box{};
    EXPECT_EQ(GetWindowRgnBox(Window(), &box), COMPLEXREGION);
    EXPECT_EQ(box.right, 199);
    EXPECT_EQ(OwnedRegion::Live(), 0) << "the window has it";
    m_Form.SetLayering({Green, 128});
    COLORREF key = 0;
    BYTE alpha = 0;
    DWORD flags = 0;
    GetLayeredWindowAttributes(Window(), &key, &alpha, &flags);
    EXPECT_EQ(key, 0x00FF00U);
    EXPECT_EQ(alpha, 128);
    EXPECT_EQ(flags, DWORD{LWA_ALPHA | LWA_COLORKEY});
    m_Form.SetLayering({});
    EXPECT_EQ(styles(GWL_EXSTYLE) & WS_EX_LAYERED, 0U);
}

TEST_F(DrawnWindowTest, AFormShownInactiveLeavesTheOtherActive) {
    m_Form.Show();
    ASSERT_TRUE(Served([&] { return m_Form.IsForeground(); }));
    Form other(m_Forms, "frmCorner");
    other.SetBorderStyle(0);
    other.SetShowInTaskbar(false);
    Place(other, 400, 100, 50, 50);
    other.SetOwner(&m_Form);
    other.ShowInactive();
    other.SetTopMost(true, false);
    EXPECT_EQ(Seen(WindowOf(other), 9, 9), m_System.Resolved(other.BackColor()));
    EXPECT_TRUE(m_Form.IsForeground());
    EXPECT_EQ(SendMessageW(WindowOf(other), WM_MOUSEACTIVATE, 0, 0), MA_NOACTIVATE);
    EXPECT_EQ(GetWindow(WindowOf(other), GW_OWNER), Window());
    m_Form.Unload();
    EXPECT_TRUE(IsWindow(WindowOf(other))) << "its owner does not take it along";
    other.Unload();
}

TEST_F(DrawnWindowTest, TheMouseIsToldUntilItLeaves) {
    Text told;
    auto& box = m_Form.Add<PictureBox>("pic");
    Place(box, 10, 10, 50, 50);
    box.MouseMoveEvent.Connect([&](const TwipPoint& at) { told += "move " + std::to_string(m_System.Scale().ToPixels(at.X)) + " "; });
    box.MouseDownEvent.Connect([&](MouseButton, const TwipPoint&) { told += "down "; });
    box.MouseLeaveEvent.Connect([&] { told += "leave "; });
    box.CaptureLostEvent.Connect([&] { told += "lost "; });
    SetCursorPos(900, 900);
    m_Form.Show();
    const HWND window = Child("TrawlbeamBox");
    SendMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(7, 8));
    // The mouse is elsewhere, which the system finds out by itself.
    ASSERT_TRUE(Served([&] { return told.ends_with("leave "); }));
    EXPECT_EQ(told, "move 7 leave ");
    told.clear();
    box.SetCapture(true);
    SendMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(-3, 8));
    SendMessageW(window, WM_MOUSELEAVE, 0, 0);
    SendMessageW(window, WM_LBUTTONDOWN, 0, 0);
    EXPECT_EQ(told, "move -3 down ");
    ::SetCapture(Window());
    ASSERT_TRUE(Served([&] { return told.ends_with("leave "); }));
    EXPECT_EQ(told, "move -3 down lost leave ");
    box.SetCapture(true);
    EXPECT_EQ(GetCapture(), window);
    box.SetCapture(false);
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_EQ(told, "move -3 down lost leave ");
}

// The mouse goes by itself while the window's loop runs; the window goes as far, and tells whether it has.
TEST_F(DrawnWindowTest, ADragTakesTheWindowAlong) {
    m_Form.SetShowInTaskbar(false);
    std::vector<bool> moved;
    m_Form.MouseDownEvent.Connect([&](MouseButton, const TwipPoint&) { moved.push_back(m_Form.DragByCaption()); });
    m_Form.ShowInactive();
    ServeWaitingMessages();
    const DWORD thread = GetCurrentThreadId();
    for (const int steps : {10, 0}) {
        std::thread mouse([&, window = Window()] {
            const auto send = [](DWORD flags, LONG x = 0, LONG y = 0) {
                INPUT input{};
                input.type = INPUT_MOUSE;
                input.mi.dwFlags = flags;
                input.mi.dx = x;
                input.mi.dy = y;
                SendInput(1, &input, sizeof input);
            };
            RECT place{};
            GetWindowRect(window, &place);
            SetCursorPos(static_cast<int>(place.left) + 50, static_cast<int>(place.top) + 50);
            send(MOUSEEVENTF_LEFTDOWN);
            Eventually([&] {
                GUITHREADINFO state{};
                state.cbSize = sizeof state;
                return GetGUIThreadInfo(thread, &state) && state.hwndMoveSize == window;
            });
            for (int step = 0; step < steps; ++step) send(MOUSEEVENTF_MOVE, 5, 3);
            send(MOUSEEVENTF_LEFTUP);
        });
        const size_t before = moved.size();
        Served([&] { return moved.size() > before; });
        mouse.join();
    }
    EXPECT_EQ(moved, (std::vector<bool>{true, false}));
    EXPECT_EQ(m_Form.Left(), Of(150));
    EXPECT_EQ(m_Form.Top(), Of(130));
}

TEST_F(DrawnWindowTest, KeysPressButtonsAndCloseWhatHasNone) {
    Text told;
    auto& ok = m_Form.Add<CommandButton>("cmdOK");
    auto& cancel = m_Form.Add<CommandButton>("cmdCancel");
    Place(ok, 10, 10, 60, 24);
    Place(cancel, 80, 10, 60, 24);
    ok.SetDefault(true);
    cancel.SetCancel(true);
    ok.ClickEvent.Connect([&] { told += "ok "; });
    cancel.ClickEvent.Connect([&] { told += "cancel "; });
    m_Form.KeyDownEvent.Connect([&](const KeyPress& key, bool& handled) {
        told += std::to_string(key.Key) + " ";
        handled = key.Key == 'C';
    });
    m_Form.Show();
    ASSERT_TRUE(Served([&] { return m_Form.IsForeground(); }));
    ok.SetFocus();
    const auto press = [&](WPARAM key) {
        told.clear();
        PostMessageW(GetFocus(), WM_KEYDOWN, key, 1);
        PostMessageW(GetFocus(), WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
        ServeWaitingMessages();
        return told;
    };
    const auto borderOf = [&](bool isDefault) {
        ButtonState state;
        state.Default = isDefault;
        return LookOfButton({m_System.Resolved(ok.BackColor()), m_System.Resolved(ok.ForeColor())}, state).Border;
    };
    EXPECT_EQ(Seen(40, 10), borderOf(true));
    EXPECT_EQ(Seen(110, 10), borderOf(false));
    EXPECT_EQ(Seen(10, 10), Blue) << "what lies beneath the corner";
    EXPECT_EQ(press('C'), "67 ");
    EXPECT_EQ(press(VK_RETURN), "13 ok ");
    press(VK_TAB);
    EXPECT_EQ(GetFocus(), Child("BUTTON", 1));
    EXPECT_EQ(Seen(40, 10), borderOf(false)) << "the look goes with the focus";
    EXPECT_EQ(Seen(110, 10), borderOf(true));
    EXPECT_EQ(press(VK_RETURN), "13 cancel ");
    EXPECT_EQ(press(VK_SPACE), "32 cancel ");
    EXPECT_EQ(press(VK_ESCAPE), "27 cancel ");
    told.clear();
    for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP}) {
        SendMessageW(Child("BUTTON"), message, 0, MAKELPARAM(5, 5));
    }
    EXPECT_EQ(told, "ok ok ");
    cancel.SetEnabled(false);
    press(VK_ESCAPE);
    EXPECT_FALSE(m_Form.IsLoaded()) << "Escape closes what has no button for it";
}

TEST_F(DrawnWindowTest, NewColoursOfTheSystemAreToldOnce) {
    int told = 0;
    m_Form.SystemColorsEvent.Connect([&] { ++told; });
    m_Form.Show();
    for (const UINT message : {WM_SYSCOLORCHANGE, WM_THEMECHANGED, WM_SETTINGCHANGE}) SendMessageW(Window(), message, 0, 0);
    ASSERT_TRUE(Served([&] { return told > 0; }));
    ServeWaitingMessages();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(m_System.Resolved(SystemColors::ButtonFace).Bits(), static_cast<std::int32_t>(GetSysColor(COLOR_BTNFACE)));
    EXPECT_EQ(m_System.Resolved(Red), Red);
}

TEST_F(DrawnWindowTest, OpeningsLeaveNothingBehind) {
    const auto open = [&] {
        Form form(m_Forms, "frmOften");
        auto& box = form.Add<PictureBox>("pic");
        auto& option = form.Add<OptionButton>("opt", NoIndex, &box);
        auto& label = form.Add<Label>("lbl", NoIndex, &box);
        form.Add<CommandButton>("cmd").SetFont({"Tahoma", 11, true, false, false});
        form.Add<Image>("img", NoIndex, &box).SetPicture(m_System.Decode(SmallGif));
        form.Add<Line>("lin");
        form.Load();
        form.Surface()->Print({3, 3}, "Title", {}, Red);
        form.SetRoundRegion({0, 0}, {99, 99}, 5);
        label.SetBackStyle(0);
        option.SetCaption("One");
        form.Show();
        ServeWaitingMessages();
        form.Unload();
    };
    open();
    const std::int32_t before = HandleCount::Live();
    for (int count = 0; count < 300; ++count) open();
    EXPECT_EQ(HandleCount::Live(), before);
}

}  // namespace
}  // namespace tb
