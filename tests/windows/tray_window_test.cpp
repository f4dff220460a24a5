// The tray's window, icon and menu on the real desktop.
#include <gtest/gtest.h>

#include <future>

#include "components/tbBHBridge/ChannelNames.h"
#include "platform/win32/Handle.h"
#include "platform/win32/MessageLoop.h"
#include "platform/win32/Win32TrayIcon.h"
#include "platform/win32/Win32WindowText.h"
#include "ui/window/win32/Win32WindowSystem.h"
#include "urlcheck/tray/frmSysTray.h"
#include "windows/Eventually.h"

namespace tb {
namespace {

// A row of a menu: the caption, with " bold" or " grey" behind it, or "-".
Text MenuRow(HMENU menu, int position) {
    char caption[64] = "";
    MENUITEMINFOA item{};
    item.cbSize = sizeof item;
    item.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_STRING;
    item.dwTypeData = caption;
    item.cch = sizeof caption;
    GetMenuItemInfoA(menu, static_cast<UINT>(position), TRUE, &item);
    if ((item.fType & MFT_SEPARATOR) != 0) return "-";
    return Text(caption) + ((item.fState & MFS_DEFAULT) != 0 ? " bold" : "") +
           ((item.fState & MFS_DISABLED) != 0 ? " grey" : "");
}

// Opens the menu of a tray window of the calling thread, presses Escape or the letter of an item, and returns when it
// is closed. The rows that were shown.
std::vector<Text> UseTrayMenu(HWND tray, char letter = 0) {
    constexpr UINT getMenuOfWindow = 0x1E1;  // MN_GETHMENU
    auto rows = std::async(std::launch::async, [=] {
        std::vector<Text> shown;
        HWND open = nullptr;
        Eventually([&] { return (open = OpenMenu(GetCurrentProcessId())) != nullptr; });
        const auto menu = reinterpret_cast<HMENU>(SendMessageA(open, getMenuOfWindow, 0, 0));
        for (int row = 0; row < GetMenuItemCount(menu); ++row) shown.push_back(MenuRow(menu, row));
        PostMessageA(tray, letter == 0 ? WM_KEYDOWN : WM_CHAR, letter == 0 ? VK_ESCAPE : letter, 0);
        return shown;
    });
    SendMessageA(tray, TrayIconMessage, TrayIconId, WM_RBUTTONDOWN);
    ServeWaitingMessages();
    return rows.get();
}

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

TEST_F(TrayWindowTest, TellsTheMessagesOfItsIconAndShowsItsMenu) {
    const HWND window = ToHwnd(m_Tray.hWnd());
    for (const LPARAM message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_RBUTTONDBLCLK}) {
        PostMessageA(window, TrayIconMessage, TrayIconId, message);
        PostMessageA(window, TrayIconMessage, TrayIconId + 1, message);
    }
    PostMessageA(window, RegisterWindowMessageA("TaskbarCreated"), 0, 0);
    ServeWaitingMessages();
    EXPECT_EQ(m_Events, "down1 double1 double2 ");
    m_Events.clear();
    const std::int32_t handles = HandleCount::Live();
    EXPECT_EQ(UseTrayMenu(window),
              (std::vector<Text>{"Trawlbeam Anti-Scam System bold", "-", "&Main", "&About... grey"}));
    UseTrayMenu(window, 'm');
    EXPECT_EQ(m_Events, "down2 down2 click menu1 ");
    EXPECT_EQ(HandleCount::Live(), handles) << "the menu leaves nothing behind";
}

}  // namespace
}  // namespace tb
