// The channel of the real program, asked from another process by the calls that a browser helper makes.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "windows/Browser.h"
#include "windows/FlatMemory.h"
#include "windows/RunningProgram.h"

namespace tb {
namespace {

class Channel : public testing::Test {
protected:
    void Set(const Text& text) { Win32WindowText().SendText(m_Program.Box(), text); }
    LRESULT BoxLength() { return SendMessageA(ToHwnd(m_Program.Box()), WM_GETTEXTLENGTH, 0, 0); }

    // Without update cycles, which would load what talks to the network while memory is watched.
    static std::shared_ptr<ProgramFolder> Folder() {
        auto folder = std::make_shared<ProgramFolder>();
        folder->WriteSetting("TIMERS", "EVILDB_ENABLED", "0");
        return folder;
    }

    RunningProgram m_Program{Folder()};
};

const Text Blocked = RunningProgram::Blocked;

TEST_F(Channel, AnswersEachKindOfRequest) {
    Browser browser;
    EXPECT_FALSE(IsWindowVisible(m_Program.Top()));
    EXPECT_EQ(browser.Ask("Check\thttp://ok.example/"), "OK");
    EXPECT_EQ(browser.Ask("Check\thttp://www.evil.example/%6Fffer/x"), Blocked);
    EXPECT_EQ(browser.Ask("Check\thttp://www.evil.example/%6Fffer/x\t\tfifth\tsixth"), Blocked);
    EXPECT_EQ(browser.Ask("Check\thttps://phish.test\t10.0.0.1 10.0.0.2"), Blocked);
    EXPECT_EQ(browser.Ask("Check\t"), "OK");
    EXPECT_EQ(browser.Ask("Allow\thttp://evil.example/"), "");
    EXPECT_EQ(browser.Ask("Check"), "");
    Set("");
    const Text log = m_Program.Log();
    EXPECT_NE(log.find("CheckEvil error: 9 Subscript out of range\n"), Text::npos) << log;
}

TEST_F(Channel, ServesOthersWhileTheMessageOfAnUnknownCommandIsOpen) {
    Text reply = "not yet";
    std::atomic<bool> answered = false;
    std::thread asker([&] {
        Browser browser;
        reply = browser.Ask("Nope\tx");
        answered = true;
    });
    HWND dialog = nullptr;
    EXPECT_TRUE(
        Eventually([&] { return (dialog = FindWindowOf(m_Program.ProcessId(), "#32770", "Trawlbeam")) != nullptr; }));
    Browser other;
    EXPECT_EQ(other.Ask("Check\thttps://phish.test"), Blocked);
    EXPECT_TRUE(other.Client().WakeUp());
    EXPECT_EQ(BoxLength(), 0);
    EXPECT_FALSE(answered);
    PostMessageA(dialog, WM_COMMAND, IDOK, 0);
    asker.join();
    EXPECT_EQ(reply, "");
}

TEST_F(Channel, AnswersEachOfSeveralClientsInItsOwnWindow) {
    // The class of reply windows is registered before two threads could do so at the same moment.
    const Browser registers;
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
    const FlatMemory memory(m_Program.Process());
    for (int round = 0; round < 4; ++round) askAll();
    memory.Expect("6000 requests");
    EXPECT_EQ(wrong, 0);
}

// What was allowed holds after the next start, whatever characters stood in one of the URLs.
TEST(AllowedSites, OutliveTheProgram) {
    const auto folder = std::make_shared<ProgramFolder>();
    const auto expectAllowed = [](Browser& browser) {
        EXPECT_EQ(browser.Ask("Check\thttps://phish.test/x"), "OK");
        EXPECT_EQ(browser.Ask("Check\thttp://evil.example/offer%3Cb%0D%0A&lt;/c"), "OK");
        EXPECT_EQ(browser.Ask("Check\thttp://evil.example/offer"), Blocked);
    };
    {
        const RunningProgram program(folder);
        Browser browser;
        for (const char* url : {"https://phish.test/", "http://evil.example/offer%3Cb%0D%0A&lt;"}) {
            EXPECT_EQ(browser.Ask(Text("Allow\t") + url), "");
        }
        expectAllowed(browser);
    }
    const RunningProgram program(folder);
    Browser browser;
    expectAllowed(browser);
    EXPECT_EQ(folder->Log().find("Override Database"), Text::npos) << folder->Log();
}

// A first field that is no number ends the process, without reply, dialog or wait.
TEST(BrokenChannel, EndsTheProcessOnPurpose) {
    for (const auto& [line, quoted] :
         std::vector<std::pair<Text, Text>>{{"abc\tCheck\thttp://x/", "abc"},
                                            {"TBWAKEUP\tx", "TBWAKEUP"},
                                            {"99999999999\tCheck\thttp://x/", "99999999999"},
                                            {"\tCheck\thttp://x/", ""},
                                            {"\x80\"\r\n2\tCheck", "\\x80\"\\x0D\\x0A2"}}) {
        RunningProgram program;
        Win32WindowText().SendText(program.Box(), line);
        EXPECT_EQ(program.WaitForEnd(), 3U) << line;
        const Text log = program.Log();
        EXPECT_EQ(log.find("   Browser channel: \"" + quoted + "\" is no reply window: "), 0U) << log;
        EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1) << log;
    }
}

}  // namespace
}  // namespace tb
