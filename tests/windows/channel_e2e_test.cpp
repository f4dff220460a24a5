// The channel of the real program, asked from another process by the calls that a browser helper makes.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "windows/FlatMemory.h"
#include "windows/RunningProgram.h"

namespace tb {
namespace {

const Text Blocked = RunningProgram::Blocked;

void AnswersEachKindOfRequest(RunningProgram& program) {
    Browser browser;
    EXPECT_FALSE(IsWindowVisible(program.Top()));
    EXPECT_EQ(browser.Ask("Check\thttp://ok.example/"), "OK");
    EXPECT_EQ(browser.Ask("Check\thttp://www.evil.example/%6Fffer/x\t10.0.0.1 10.0.0.2\tfifth"), Blocked);
    EXPECT_EQ(browser.Ask("Check"), "");
    Win32WindowText().SendText(program.Box(), "");
    const Text log = program.Log();
    EXPECT_NE(log.find("CheckEvil error: 9 Subscript out of range\n"), Text::npos) << log;
}

void ServesOthersWhileTheMessageOfAnUnknownCommandIsOpen(RunningProgram& program) {
    Text reply = "not yet";
    std::atomic<bool> answered = false;
    std::thread asker([&] {
        reply = Browser().Ask("Nope\tx");
        answered = true;
    });
    EXPECT_TRUE(Eventually([&] { return FindBoxButton(program.ProcessId(), "Trawlbeam", "OK") != nullptr; }));
    Browser other;
    EXPECT_EQ(other.Ask("Check\thttps://phish.test"), Blocked);
    EXPECT_TRUE(other.Client().WakeUp());
    EXPECT_EQ(SendMessageA(ToHwnd(program.Box()), WM_GETTEXTLENGTH, 0, 0), 0);
    EXPECT_FALSE(answered);
    AnswerBox(program.ProcessId(), "Trawlbeam", "", "OK");
    asker.join();
    EXPECT_EQ(reply, "");
}

void AnswersEachOfSeveralClientsInItsOwnWindow(RunningProgram& program) {
    std::atomic<int> wrong = 0;
    const auto ask = [&wrong](const Text& url, const Text& expected) {
        Browser browser;
        for (int count = 0; count < 500; ++count) wrong += browser.Ask("Check\t" + url) == expected ? 0 : 1;
    };
    const auto askAll = [&] {
        std::thread first(ask, "http://evil.example/offer", Blocked);
        std::thread second(ask, "http://harmless.example/", "OK");
        std::thread third(ask, "https://phish.test/x", Blocked);
        first.join();
        second.join();
        third.join();
    };
    askAll();
    const FlatMemory memory(program.Process());
    for (int round = 0; round < 4; ++round) askAll();
    memory.Expect("6000 requests");
    EXPECT_EQ(wrong, 0);
}

TEST(Channel, ServesBrowsers) {
    const auto folder = std::make_shared<ProgramFolder>();
    // Update cycles would load what talks to the network while memory is watched.
    folder->WriteSetting("TIMERS", "EVILDB_ENABLED", "0");
    RunningProgram program(folder);
    AnswersEachKindOfRequest(program);
    ServesOthersWhileTheMessageOfAnUnknownCommandIsOpen(program);
    AnswersEachOfSeveralClientsInItsOwnWindow(program);
}

// A first field that is no number ends the process, without reply, dialog or wait.
TEST(Channel, BrokenItEndsTheProcessOnPurpose) {
    RunningProgram program;
    Win32WindowText().SendText(program.Box(), "\x80\"\r\n2\tCheck");
    EXPECT_EQ(program.WaitForEnd(), 3U);
    const Text log = program.Log();
    EXPECT_EQ(log.find("   Browser channel: \"\\x80\"\\x0D\\x0A2\" is no reply window: "), 0U) << log;
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1) << log;
}

}  // namespace
}  // namespace tb
