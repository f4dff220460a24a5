#include <gtest/gtest.h>

#include <limits>

#include "components/tbBHBridge/ChannelClient.h"
#include "fakes/FakePlatform.h"
#include "fakes/Raised.h"
#include "fakes/RecordedLog.h"
#include "urlcheck/BrowserChannel.h"
#include "urlcheck/UpdateStatistics.h"

namespace tb {
namespace {

class ChannelTest : public ::testing::Test {
protected:
    // Kind, reply window and reply or line, or only the kind.
    Text Handle(const Text& line) {
        const ChannelResult result = m_Channel.Handle(line);
        switch (result.What) {
        case ChannelResult::Kind::Nothing: return "nothing";
        case ChannelResult::Kind::WakeUp: return "wake-up";
        case ChannelResult::Kind::Broken: return "broken: " + result.Text;
        case ChannelResult::Kind::Reply: break;
        }
        return std::to_string(result.ReplyWindow) + ": " + result.Text;
    }

    int m_Judged = 0;
    BrowserChannel m_Channel{[this](const std::vector<Text>& args, Text& reply) {
        ++m_Judged;
        reply = Join(args, "|");
    }};
};

TEST_F(ChannelTest, SplitsTheLineAndAnswersItsWindow) {
    EXPECT_EQ(Handle("66066\tCheck\thttp://x/\t"), "66066: 66066|Check|http://x/|");
    EXPECT_EQ(Handle(" -5 \tNope"), "-5:  -5 |Nope");
    EXPECT_EQ(Handle(""), "nothing");
    EXPECT_EQ(Handle("TBWAKEUP"), "wake-up");
    EXPECT_EQ(m_Judged, 2);
    EXPECT_EQ(Handle("99999999999\tCheck"), "broken: Browser channel: \"99999999999\" is no reply window: 6 Overflow");
    for (const char* line : {"TBWAKEUP\tCheck", "\tCheck\tx", "tbwakeup", "TBWAKEUP ", "0x10\tCheck", "1;2\tCheck",
                             "a\r\nforged line\tCheck"}) {
        const Text answer = Handle(line);
        EXPECT_EQ(answer.rfind("broken: ", 0), 0U) << line;
        EXPECT_EQ(answer.find('\n'), Text::npos);
    }
    EXPECT_EQ(m_Judged, 2);
}

class FakeWindows : public WindowText {
public:
    WindowHandle FindTopLevel(const Text& className, const Text& caption) override {
        return caption == "Trawlbeam Tray" && className == Class ? 10 : 0;
    }
    WindowHandle FindChild(WindowHandle parent, const Text& className) override {
        return parent == 10 && className == BoxClass ? 11 : 0;
    }
    void SendText(WindowHandle window, const Text& text) override { Sent += std::to_string(window) + "<" + text + ">"; }

    Text Class;
    Text BoxClass;
    Text Sent;
};

TEST(ChannelClient, FindsTheTextBoxByEitherPairOfClasses) {
    FakeWindows windows;
    ChannelClient client(windows);
    EXPECT_FALSE(client.Locate());
    EXPECT_FALSE(client.Send(5, "Check\tx"));
    EXPECT_FALSE(client.WakeUp());
    windows.Class = "ThunderRT6FormDC";
    windows.BoxClass = "ThunderTextBox";
    EXPECT_FALSE(client.Locate()) << "a mixed pair is no channel";
    windows.BoxClass = "ThunderRT6TextBox";
    EXPECT_TRUE(client.Locate());
    windows.Class = "ThunderFormDC";
    windows.BoxClass = "ThunderTextBox";
    EXPECT_TRUE(client.Locate());
    EXPECT_TRUE(client.Send(-5, "Check\tx"));
    EXPECT_TRUE(client.WakeUp());
    EXPECT_EQ(windows.Sent, "11<-5\tCheck\tx>11<TBWAKEUP>");
}

TEST(UpdateStatistics, BeginsAnewWhenADayHasPassed) {
    FakeClock clock;
    clock.Present = Date(CivilDate{2005, 11, 30, 23, 0, 0});
    RecordedLog log;
    UpdateStatistics statistics(clock, log);
    statistics.EvilAdded(1, 0);
    clock.Present = Date(CivilDate{2005, 12, 1, 0, 0, 0});
    statistics.EvilAdded(2, 1);
    EXPECT_EQ(Raised([&] { statistics.EvilAdded(std::numeric_limits<std::int32_t>::max(), 0); }), 6);
    clock.Present = Date(CivilDate{2005, 12, 1, 0, 0, 1});
    statistics.EvilAdded(0, 5);
    EXPECT_EQ(log.Take(),
              (std::vector<Text>{"1 ***Display Statistics 11/30/2005 +1 -0", "1 ***Display Statistics 11/30/2005 +3 -1",
                                 "1 ***Display Statistics 12/01/2005 +0 -5"}));
}

}  // namespace
}  // namespace tb
