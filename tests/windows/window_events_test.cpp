// What forms and their controls as real windows hear of mouse, keys and the system, and what the system has of them.
#include "windows/RealForm.h"

#include <commctrl.h>

#include <functional>

#include "ui/window/ButtonLook.h"
#include "ui/window/CommandButton.h"
#include "ui/window/PictureBox.h"

namespace tb {
namespace {

using WindowEventsTest = RealForm;

TEST_F(WindowEventsTest, AFormTakesStylesRegionAndTranslucence) {
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

TEST_F(WindowEventsTest, AFormShownInactiveLeavesTheOtherActive) {
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

TEST_F(WindowEventsTest, TheMouseIsToldUntilItLeaves) {
    Text told;
    auto& box = m_Form.Add<PictureBox>("pic");
    Place(box, 10, 10, 50, 50);
    box.MouseMoveEvent.Connect([&](const TwipPoint& at) {
        const Text move = "move " + std::to_string(m_System.Scale().ToPixels(at.X)) + " ";
        // The system may tell one place several times.
        if (!told.ends_with(move)) told += move;
    });
    box.MouseDownEvent.Connect([&](MouseButton, const TwipPoint&) { told += "down "; });
    box.MouseLeaveEvent.Connect([&] { told += "leave "; });
    box.CaptureLostEvent.Connect([&] { told += "lost "; });
    m_Form.Show();
    const HWND window = Child("TrawlbeamBox");
    // It goes over the window, and away, when the window has heard of it. At one place it would be told once.
    int moves = 0;
    ASSERT_TRUE(Served([&] {
        PutBack(m_Form);
        POINT inside{7, 8 + ++moves % 2};
        ClientToScreen(window, &inside);
        SetCursorPos(static_cast<int>(inside.x), static_cast<int>(inside.y));
        return told.ends_with("move 7 ");
    })) << told;
    SetCursorPos(900, 900);
    ASSERT_TRUE(Served([&] { return told.ends_with("leave "); })) << told;
    EXPECT_EQ(told, "move 7 leave ");
    told.clear();
    box.SetCapture(true);
    SendMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(-3, 8));
    SendMessageW(window, WM_MOUSELEAVE, 0, 0);
    SendMessageW(window, WM_LBUTTONDOWN, 0, 0);
    EXPECT_EQ(told, "move -3 down ");
    ::SetCapture(Window());
    ASSERT_TRUE(Served([&] { return told.ends_with("leave "); })) << told;
    box.SetCapture(true);
    box.SetCapture(false);
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_EQ(told, "move -3 down lost leave ") << "once, and not of its own release";
}

// What the system does with a caption that is held: here it moves the window as far as the test says.
LRESULT CALLBACK Caption(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR way) {
    if (message != WM_NCLBUTTONDOWN) return DefSubclassProc(window, message, wParam, lParam);
    EXPECT_EQ(wParam, WPARAM{HTCAPTION});
    EXPECT_EQ(GetCapture(), nullptr);
    (*reinterpret_cast<std::function<void()>*>(way))();
    return 0;
}

TEST_F(WindowEventsTest, ADragByTheCaptionTellsWhetherItMoved) {
    std::vector<bool> moved;
    m_Form.MouseDownEvent.Connect([&](MouseButton, const TwipPoint&) { moved.push_back(m_Form.DragByCaption()); });
    m_Form.Show();
    std::function<void()> way;
    SetWindowSubclass(Window(), &Caption, 0, reinterpret_cast<DWORD_PTR>(&way));
    for (const int step : {0, 30, 30}) {
        way = [&] {
            SetWindowPos(Window(), nullptr, 100 + step, 100, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
            if (moved.size() == 2) m_Form.Unload();
        };
        ::SetCapture(Window());
        SendMessageW(Window(), WM_LBUTTONDOWN, 0, 0);
    }
    EXPECT_EQ(moved, (std::vector<bool>{false, true, false}));
    EXPECT_EQ(m_Form.Left(), Of(130));
}

TEST_F(WindowEventsTest, KeysPressButtonsAndCloseWhatHasNone) {
    Text told;
    bool isKept = false;
    auto& ok = m_Form.Add<CommandButton>("cmdOK");
    auto& cancel = m_Form.Add<CommandButton>("cmdCancel");
    Place(ok, 10, 10, 60, 24);
    Place(cancel, 80, 10, 60, 24);
    ok.SetCaption("&OK");
    ok.SetDefault(true);
    cancel.SetCancel(true);
    ok.ClickEvent.Connect([&] { told += "ok "; });
    cancel.ClickEvent.Connect([&] { told += "cancel "; });
    m_Form.KeyDownEvent.Connect([&](const KeyPress& key, bool& handled) {
        told += std::to_string(key.Key) + " ";
        handled = key.Key == 'C' || isKept;
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
    const ControlColors colors{m_System.Resolved(ok.BackColor()), m_System.Resolved(ok.ForeColor())};
    const auto borderOf = [&](bool isDefault) { return LookOfButton(colors, {.Default = isDefault}).Border; };
    EXPECT_EQ(Seen(40, 10), borderOf(true));
    EXPECT_EQ(Seen(110, 10), borderOf(false));
    EXPECT_EQ(Seen(10, 10), Blue) << "what lies beneath the corner";
    EXPECT_EQ(press('C'), "67 ");
    EXPECT_EQ(press(VK_RETURN), "13 ok ");
    isKept = true;
    press(VK_TAB);
    EXPECT_EQ(GetFocus(), Child("BUTTON", 0)) << "whoever has seen the key before may keep it";
    isKept = false;
    press(VK_TAB);
    EXPECT_EQ(GetFocus(), Child("BUTTON", 1));
    EXPECT_EQ(Seen(40, 10), borderOf(false)) << "the look goes with the focus";
    EXPECT_EQ(Seen(110, 10), borderOf(true));
    EXPECT_EQ(press(VK_RETURN), "13 cancel ");
    EXPECT_EQ(press(VK_SPACE), "32 cancel ");
    EXPECT_EQ(press(VK_ESCAPE), "27 cancel ");
    told.clear();
    PostMessageW(GetFocus(), WM_SYSCHAR, 'o', 1 << 29);
    ServeWaitingMessages();
    EXPECT_EQ(told, "ok ") << "Alt and its letter";
    told.clear();
    for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP}) {
        SendMessageW(Child("BUTTON"), message, 0, MAKELPARAM(5, 5));
    }
    EXPECT_EQ(told, "ok ok ");
    cancel.SetEnabled(false);
    press(VK_ESCAPE);
    EXPECT_FALSE(m_Form.IsLoaded()) << "Escape closes what has no button for it";
}

TEST_F(WindowEventsTest, NewColoursOfTheSystemAreToldOnce) {
    int told = 0;
    auto& box = m_Form.Add<PictureBox>("pic");
    m_Form.SystemColorsEvent.Connect([&] { ++told; });
    m_Form.Show();
    for (Surface* const surface : {m_Form.Surface(), box.Surface()}) surface->SetPixel({1, 1}, Red);
    SendMessageW(Window(), WM_SETTINGCHANGE, SPI_SETWORKAREA, 0);
    ServeWaitingMessages();
    EXPECT_EQ(told, 0);
    SendMessageW(Window(), WM_SYSCOLORCHANGE, 0, 0);
    SendMessageW(Window(), WM_SETTINGCHANGE, SPI_SETHIGHCONTRAST, 0);
    ASSERT_TRUE(Served([&] { return told > 0; }));
    ServeWaitingMessages();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(m_Form.Surface()->GetPixel({1, 1}), Red);
    EXPECT_EQ(box.Surface()->GetPixel({1, 1}), m_System.Resolved(box.BackColor())) << "its ground is another one";
    EXPECT_EQ(m_System.Resolved(SystemColors::ButtonFace).Bits(),
              static_cast<std::int32_t>(GetSysColor(COLOR_BTNFACE)));
    EXPECT_EQ(m_System.Resolved(Red), Red);
}

}  // namespace
}  // namespace tb
