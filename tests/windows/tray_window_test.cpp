// The tray's window, icon and menu on the real desktop.
#include <gtest/gtest.h>

#include "components/tbBHBridge/ChannelNames.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Win32Sound.h"
#include "platform/win32/Win32TrayIcon.h"
#include "platform/win32/Win32WindowText.h"
#include "ui/window/win32/Win32WindowSystem.h"
#include "urlcheck/sounds/Sounds.h"
#include "urlcheck/tray/frmSysTray.h"
#include "windows/TrayMenu.h"

namespace tb {
namespace {

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
        // Tests of several processes may run at once.
        m_Tray.SetCaption("Trawlbeam tray test " + std::to_string(GetCurrentProcessId()));
        m_Tray.Load();
        m_Tray.AddMenuItem("Trawlbeam Anti-Scam System", "dblclick", true);
        m_Tray.AddMenuItem("-", "");
        m_Tray.AddMenuItem("&Main", "menu1");
        m_Tray.EnableMenuItem(m_Tray.AddMenuItem("&About...", "about"), false);
    }
    ~TrayWindowTest() override {
        m_Tray.Unload();
        EXPECT_EQ(OwnedWindow::Live(), 0);
        EXPECT_TRUE(m_Failures.empty());
    }

    Text m_Events;
    std::vector<Text> m_Failures;
    const std::function<void(const RuntimeError&)> m_Failed = [this](const RuntimeError& error) {
        m_Failures.push_back(error.Line());
    };
    Win32TrayIcon m_Icon{m_Failed};
    Win32WindowText m_Windows;
    Win32WindowSystem m_System{{NormalClasses.Window, NormalClasses.TextBox}, m_Failed};
    Forms m_Forms{&m_System};
    frmSysTray m_Tray{m_Forms, {m_Icon, m_Windows, WindowsVersion{2, 6, 1}, nullptr, [this](const Text& line) {
                                    m_Failures.push_back(line);
                                }}};
};

TEST_F(TrayWindowTest, OnlyMessagesOfTheIconAreEvents) {
    const HWND window = ToHwnd(m_Tray.hWnd());
    for (const LPARAM message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_RBUTTONDBLCLK}) {
        PostMessageA(window, TrayIconMessage, TrayIconId, message);
        PostMessageA(window, TrayIconMessage, TrayIconId + 1, message);
    }
    PostMessageA(window, RegisterWindowMessageA("TaskbarCreated"), 0, 0);
    Serve();
    EXPECT_EQ(m_Events, "down1 double1 double2 ");
}

TEST_F(TrayWindowTest, TheMenuShowsItsItemsAndLeavesNothingBehind) {
    const HWND window = ToHwnd(m_Tray.hWnd());
    const auto open = [&] {
        EXPECT_EQ(TrayMenu::Open(window),
                  (std::vector<Text>{"Trawlbeam Anti-Scam System bold", "-", "&Main", "&About... grey"}));
    };
    open();
    TrayMenu::Open(window, 'm');
    EXPECT_EQ(m_Events, "down2 down2 click menu1 ");
    const std::int32_t handles = HandleCount::Live();
    for (int count = 0; count < 10; ++count) open();
    EXPECT_EQ(HandleCount::Live(), handles);
}

TEST(Win32Sound, PlaysWithoutBlockingAndKeepsTheBytes) {
    constexpr std::uint32_t seconds = 60;
    constexpr std::uint32_t length = 8000 * seconds;
    const auto number = [](std::uint32_t value) { return Text(reinterpret_cast<const char*>(&value), sizeof value); };
    const Text format("WAVEfmt \x10\0\0\0\1\0\1\0\x40\x1f\0\0\x40\x1f\0\0\1\0\x8\0data", 32);
    const Text wave = "RIFF" + number(36 + length) + format + number(length) + Text(length, '\x80');
    Win32Sound device;
    Sounds sounds(device, "", wave);
    const DWORD start = GetTickCount();
    for (int count = 0; count < 20; ++count) sounds.PlayAlertSound(true);
    EXPECT_LT(GetTickCount() - start, seconds * 1000) << "less than a single one takes";
}

}  // namespace
}  // namespace tb
