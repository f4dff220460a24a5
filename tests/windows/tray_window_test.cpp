// The tray's window, icon and menu on the real desktop.
#include <gtest/gtest.h>

#include "components/tbBHBridge/ChannelNames.h"
#include "platform/win32/Win32Sound.h"
#include "platform/win32/Win32TrayIcon.h"
#include "platform/win32/Win32WindowText.h"
#include "ui/window/win32/Win32WindowSystem.h"
#include "urlcheck/sounds/Sounds.h"
#include "urlcheck/tray/frmSysTray.h"
#include "windows/TrayMenu.h"

namespace tb {
namespace {

// The real icon; what is told to the shell is counted.
class CountedTrayIcon : public Win32TrayIcon {
public:
    using Win32TrayIcon::Win32TrayIcon;
    bool Notify(NotifyIconCall call, const NotifyIconRecord& record) noexcept override {
        const bool done = Win32TrayIcon::Notify(call, record);
        if (call == NotifyIconCall::Add) ++Added;
        if (call == NotifyIconCall::Delete) DeleteResult = done;
        LastResult = done;
        return done;
    }
    int Added = 0;
    bool LastResult = false;
    bool DeleteResult = false;
};

class TrayWindowTest : public ::testing::Test {
protected:
    TrayWindowTest() {
        m_Tray.MenuClick.Connect([this](std::int32_t, const Text& key) { m_Events += "click " + key + " "; });
        m_Tray.SysTrayMouseDown.Connect([this](std::int32_t button) {
            m_Events += "down" + std::to_string(button) + " ";
            if (button == 2) m_Tray.ShowMenu();
        });
        m_Tray.SysTrayDoubleClick.Connect(
            [this](std::int32_t button) { m_Events += "double" + std::to_string(button) + " "; });
        m_Tray.SysTrayMouseMove.Connect([this] { m_Events += "move "; });
        // Tests of several processes may run at once.
        m_Tray.SetCaption("Trawlbeam tray test " + std::to_string(GetCurrentProcessId()));
        m_Tray.Load();
        m_Tray.AddMenuItem("Trawlbeam Anti-Scam System", "dblclick", true);
        m_Tray.AddMenuItem("-", "");
        m_Tray.AddMenuItem("&Main", "menu1");
        m_Tray.EnableMenuItem(m_Tray.AddMenuItem("&About...", "about"), false);
        m_Tray.AddMenuItem("&Exit", "exit");
    }
    ~TrayWindowTest() override {
        m_Tray.Unload();
        EXPECT_EQ(OwnedWindow::Live(), 0);
    }

    HWND Window() { return ToHwnd(m_Tray.hWnd()); }

    Text m_Events;
    std::vector<Text> m_Failures;
    const std::function<void(const RuntimeError&)> m_Failed = [this](const RuntimeError& error) {
        m_Failures.push_back(error.Line());
    };
    CountedTrayIcon m_Icon{m_Failed};
    Win32WindowText m_Windows;
    Win32WindowSystem m_System{{NormalClasses.Window, NormalClasses.TextBox}, m_Failed};
    Forms m_Forms{&m_System};
    frmSysTray m_Tray{m_Forms,
                      {m_Icon, m_Windows, WindowsVersion{2, 6, 1}, [](const Text&) { return ChannelResult(); },
                       [this](const Text& line) { m_Failures.push_back(line); }}};
};

TEST_F(TrayWindowTest, TheIconIsShownChangedAndTakenAway) {
    EXPECT_EQ(m_Icon.Added, 1);
    EXPECT_TRUE(m_Icon.LastResult);
    m_Tray.SetTooltip("Trawlbeam \xe9");
    EXPECT_TRUE(m_Icon.LastResult);
    m_Tray.ShowBalloonTip("text", "title", 1, 1000);
    EXPECT_TRUE(m_Icon.LastResult);
    PostMessageA(Window(), RegisterWindowMessageA("TaskbarCreated"), 0, 0);
    Serve();
    EXPECT_EQ(m_Icon.Added, 2);
    m_Tray.Unload();
    EXPECT_TRUE(m_Icon.DeleteResult);
}

TEST_F(TrayWindowTest, OnlyMessagesOfTheIconAreEvents) {
    for (const LPARAM message : {WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_RBUTTONDBLCLK}) {
        PostMessageA(Window(), WM_MOUSEMOVE, TrayIconId, message);
    }
    PostMessageA(Window(), WM_MOUSEMOVE, TrayIconId + 1, WM_LBUTTONUP);
    Serve();
    EXPECT_EQ(m_Events, "move down1 double1 double2 ");
}

TEST_F(TrayWindowTest, TheMenuShowsItsItemsInOrder) {
    EXPECT_EQ(TrayMenu::Open(Window()),
              (std::vector<Text>{"Trawlbeam Anti-Scam System bold", "-", "&Main", "&About... grey", "&Exit"}));
    EXPECT_EQ(m_Events, "down2 ");
    EXPECT_EQ(OpenMenu(GetCurrentProcessId()), nullptr);
    TrayMenu::Open(Window(), {VK_DOWN, VK_DOWN, VK_RETURN});
    EXPECT_EQ(m_Events, "down2 down2 click menu1 ");
    EXPECT_TRUE(m_Failures.empty());
}

TEST(Win32Sound, PlaysWithoutBlockingAndKeepsTheBytes) {
    Text wave("RIFF\x2c\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x40\x1f\0\0\x40\x1f\0\0\1\0\x8\0data\x8\0\0\0", 44);
    wave += Text(8, '\x80');
    Win32Sound device;
    Sounds sounds(device, "", wave);
    const DWORD start = GetTickCount();
    for (int count = 0; count < 20; ++count) sounds.PlayAlertSound(true);
    EXPECT_LT(GetTickCount() - start, 5000U);
}

}  // namespace
}  // namespace tb
