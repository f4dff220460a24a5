// The controller over real windows, icon and menus, with the rest of the system in memory.
#include <windows.h>

#include <gtest/gtest.h>

#include "components/tbBHBridge/ChannelNames.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeSender.h"
#include "fakes/FakeSound.h"
#include "platform/win32/Handle.h"
#include "platform/win32/ReplyWindow.h"
#include "platform/win32/Win32TrayIcon.h"
#include "platform/win32/Win32WindowText.h"
#include "shell/Start.h"
#include "ui/window/win32/Win32WindowSystem.h"
#include "windows/OnlyProgram.h"
#include "windows/TrayMenu.h"

namespace tb {
namespace {

constexpr DWORD PollMs = 5;
constexpr int MostPolls = 1000;
// The controller's timers by the numbers of their messages.
constexpr WPARAM UpdateTimer = 1;
constexpr WPARAM SubmissionTimer = 2;

class CountedServices : public ControllerServices {
public:
    bool SendVersions() override { return ++Updates == 0; }
    void ProcessSubmissions() override { ++Submissions; }
    int Updates = 0;
    int Submissions = 0;
};

class ControllerWindowTest : public testing::Test {
protected:
    void Run(const Text& settings) {
        m_System.Files.Contents["/app/Trawlbeam.ini"] = "<INI DATE='01/01/2026 00:00:00'>" + settings + "</INI>";
        m_System.Files.Contents["/app/Data/InProcess/1.txt"] = "a queue file";
        m_System.Files.Folders.insert("/app/Data/InProcess");
        ASSERT_TRUE(m_Start.Main());
        m_Tray = ToHwnd(Controller().SysTray()->hWnd());
    }
    ~ControllerWindowTest() override {
        if (m_Start.Controller()) Controller().Unload();
        EXPECT_EQ(OwnedWindow::Live(), 0);
    }

    frmController& Controller() { return *m_Start.Controller(); }
    static Text Section(const Text& name, const std::vector<std::pair<Text, Text>>& values) {
        Text section = "<SECTION name='" + name + "'>";
        for (const auto& [key, value] : values) section += "<ELEMENT NAME='" + key + "'>" + value + "</ELEMENT>";
        return section + "</SECTION>";
    }

    std::vector<Text> MenuRows() { return TrayMenu::Open(m_Tray); }

    OnlyProgram m_OnlyOne;
    FakeSystem m_System;
    Win32WindowText m_WindowText;
    App m_Program{
        {m_System.Clock, m_System.Random, m_System.Pump, m_System.Files, m_System.Dialogs, m_System.Resources,
         m_System.Processes, m_System.Shell, m_System.Versions, m_System.Registry, m_System.Machine, m_WindowText},
        TestDeployment()};
    ProgramLog m_Log{m_Program};
    std::vector<Text> m_Failures;
    const std::function<void(const RuntimeError&)> m_Failed = [this](const RuntimeError& error) {
        m_Failures.push_back(error.Line());
    };
    Win32WindowSystem m_Windows{{NormalClasses.Window, NormalClasses.TextBox}, m_Failed};
    Win32TrayIcon m_Icon{m_Failed};
    FakeSound m_Sound;
    Forms m_Forms{&m_Windows};
    CountedServices m_Services;
    SiteTables m_Tables{m_Program};
    FakeWeb m_Web;
    StartGates m_Gates;
    Start m_Start{m_Program, m_Log, m_Gates, [this] {
                      return std::make_shared<frmController>(
                          m_Forms,
                          frmController::Parts{m_Program, m_Log, m_Services, m_Tables, m_Web.Factory(), m_Icon, m_Sound,
                                               [this](const Text& line) { m_Failures.push_back(line); }});
                  }};
    HWND m_Tray = nullptr;
};

TEST_F(ControllerWindowTest, TheMenuHasItsRows) {
    Run("");
    EXPECT_EQ(MenuRows(), (std::vector<Text>{"Trawlbeam Anti-Scam System", "-", "&Main", "&Submit Scams",
                                             "&Preferences", "Trawlbeam Ho&mepage", "-", "Hide Trawlbeam &DropZone",
                                             "-", "&Help...", "&About...", "-", "&Exit"}));
    EXPECT_FALSE(IsWindowVisible(ToHwnd(Controller().hWnd())));
    EXPECT_TRUE(m_Failures.empty());
}

TEST_F(ControllerWindowTest, InDebugModeTheMenuFollowsTheDiagnosticsWindow) {
    Run(Section("Main", {{DebugSwitch(), "1"}}) + Section("Desktop", {{"Show", "0"}}));
    std::vector<Text> rows = MenuRows();
    ASSERT_EQ(rows.size(), 15U);
    EXPECT_EQ(rows[7], "Hide Debu&g Diagnostics");
    EXPECT_EQ(rows[8], "-");
    EXPECT_EQ(rows[9], "Show Trawlbeam &DropZone");
    const HWND diagnostics = ToHwnd(Controller().hWnd());
    EXPECT_TRUE(IsWindowVisible(diagnostics));
    ShowWindow(diagnostics, SW_MINIMIZE);
    for (int tries = 0; tries < MostPolls && IsWindowVisible(diagnostics); ++tries) {
        Serve();
        Sleep(PollMs);
    }
    EXPECT_FALSE(IsWindowVisible(diagnostics));
    EXPECT_EQ(MenuRows()[7], "Show Debu&g Diagnostics");
    Controller().MenuClick("diag");
    EXPECT_TRUE(IsWindowVisible(diagnostics));
    EXPECT_EQ(MenuRows()[7], "Hide Debu&g Diagnostics");
    EXPECT_NE(Controller().txtDiags.GetText().find("Trawlbeam Setup"), Text::npos);
}

// Cycles of both timers, openings of the menu and requests leave no handle and no drawing object behind.
TEST_F(ControllerWindowTest, ALongLifeLeavesNothingBehind) {
    constexpr int Cycles = 1000;
    constexpr int Openings = 200;
    constexpr int Requests = 10000;
    Run(Section("TIMERS", {{"EVILDB_INTERVAL", "0"}, {"FREEMEM_INTERVAL", "0"}, {"SUBDB_INTERVAL", "0"}}));
    Controller().Sites()->AddToDB("http://evil.example", "2", "11/21/2026");
    const HWND window = ToHwnd(Controller().hWnd());
    const WindowHandle box = m_WindowText.FindChild(ToWindowHandle(m_Tray), NormalClasses.TextBox);
    ReplyWindow reply;
    const auto live = [&](int part) {
        for (int count = 0; count < Cycles / part; ++count) {
            PostMessageA(window, WM_TIMER, UpdateTimer, 0);
            PostMessageA(window, WM_TIMER, SubmissionTimer, 0);
            Serve();
        }
        for (int count = 0; count < Openings / part; ++count) ASSERT_EQ(MenuRows().size(), 13U);
        const Text request = std::to_string(reply.Window()) + "\tCheck\thttp://evil.example/";
        for (int count = 0; count < Requests / part; ++count) m_WindowText.SendText(box, request);
    };
    live(10);
    EXPECT_EQ(reply.Take(), "Validated: 11/21/2026  (Category: Banking or Credit Card Spoof)");
    const int updates = m_Services.Updates;
    const std::int32_t handles = HandleCount::Live();
    live(1);
    EXPECT_GE(m_Services.Updates - updates, Cycles);
    EXPECT_GE(m_Services.Submissions, Cycles / 4);
    EXPECT_EQ(HandleCount::Live(), handles);
    EXPECT_TRUE(m_Failures.empty());
    std::printf("%d cycles, %d menu openings, %d requests: live handles %d -> %d\n", Cycles, Openings, Requests,
                handles, HandleCount::Live());
}

}  // namespace
}  // namespace tb
