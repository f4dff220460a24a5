// How the real program ends when it is in the midst of something, and that it lives long.
#include <gtest/gtest.h>

#include <thread>

#include "platform/TrayIcon.h"
#include "windows/FlatMemory.h"
#include "windows/RunningProgram.h"

namespace tb {
namespace {

HWND Controller() { return FindWindowW(L"ThunderRT6FormDC", L"Trawlbeam Controller"); }

bool OpenTrayMenu(RunningProgram& program) {
    PostMessageW(program.Top(), TrayIconMessage, TrayIconId, WM_RBUTTONDOWN);
    return Eventually([&] { return OpenMenu(program.ProcessId()) != nullptr; });
}

// What is posted waits for the end of the start, which a request does not: it is answered in the midst of it.
void WaitForEndOfStart(RunningProgram& program) {
    ASSERT_TRUE(OpenTrayMenu(program));
    PostMessageW(program.Top(), WM_KEYDOWN, VK_ESCAPE, 0);
    ASSERT_TRUE(Eventually([&] { return OpenMenu(program.ProcessId()) == nullptr; }));
}

// As the system ends it; false where the program forbids that.
bool EndSession() {
    const HWND controller = Controller();
    if (controller == nullptr || SendMessageW(controller, WM_QUERYENDSESSION, 0, 0) != TRUE) return false;
    SendMessageW(controller, WM_ENDSESSION, TRUE, 0);
    return true;
}

TEST(ExitOfTheProgram, NeitherAsksNorWaitsAtTheEndOfTheSession) {
    for (const bool hasMenu : {false, true}) {
        RunningProgram program;
        SendMessageW(program.Top(), WM_CLOSE, 0, 0);
        EXPECT_EQ(Browser().Ask("Check\thttps://phish.test"), RunningProgram::Blocked)
            << "the tray's window cannot be closed";
        ASSERT_TRUE(!hasMenu || OpenTrayMenu(program));
        EXPECT_TRUE(EndSession());
        EXPECT_EQ(program.WaitForEnd(), 0U) << hasMenu;
        EXPECT_NE(program.Folder().Settings().find("AutoUpdate"), Text::npos);
    }
}

// The request goes on in a program that has dropped its list.
TEST(ExitOfTheProgram, EndsThoughARequestWaitsForItsMessageToBeClosed) {
    for (const bool session : {true, false}) {
        RunningProgram program;
        // The menu has no rows before.
        if (!session) WaitForEndOfStart(program);
        Text reply = "not yet";
        std::thread asker([&] { reply = Browser().Ask("Nope\tx"); });
        HWND box = nullptr;
        EXPECT_TRUE(Eventually([&] {
            box = GetAncestor(FindBoxButton(program.ProcessId(), "Trawlbeam", "OK"), GA_ROOT);
            return box != nullptr;
        }));
        std::thread second;
        if (session) {
            second = std::thread([] { EXPECT_EQ(Browser().Ask("Nope\ty"), ""); });
            EXPECT_TRUE(Eventually([&] { return !IsWindowEnabled(box); })) << "a box above it";
            EXPECT_TRUE(EndSession());
        } else {
            // Where the box is seen, the display gives it the focus back, and with that closes the menu.
            ShowWindow(box, SW_HIDE);
            EXPECT_EQ(RunningProgram::ExitThroughTray(true), 0U);
        }
        EXPECT_EQ(program.WaitForEnd(), 0U) << session;
        asker.join();
        if (second.joinable()) second.join();
        EXPECT_EQ(reply, "") << session;
    }
}

TEST(LifeOfTheProgram, LeavesMemoryFlat) {
    const auto folder = std::make_shared<ProgramFolder>();
    folder->WriteSetting("TIMERS", "EVILDB_INTERVAL", "0");
    RunningProgram program(folder);
    const auto live = [&](int ticks, int menus) {
        for (int count = 0; count < ticks; ++count) {
            // The program's timers by the numbers of their messages.
            for (const WPARAM timer : {1, 2}) PostMessageW(Controller(), WM_TIMER, timer, 0);
            SendMessageW(Controller(), WM_NULL, 0, 0);
        }
        for (int count = 0; count < menus; ++count) {
            ASSERT_TRUE(OpenTrayMenu(program));
            PostMessageW(program.Top(), WM_KEYDOWN, VK_ESCAPE, 0);
            ASSERT_TRUE(Eventually([&] { return OpenMenu(program.ProcessId()) == nullptr; }));
        }
    };
    live(100, 20);
    const FlatMemory memory(program.Process());
    live(1000, 200);
    memory.Expect("1000 timer cycles, 200 menu openings");
}

}  // namespace
}  // namespace tb
