#include <gtest/gtest.h>

#include "components/tbBHBridge/ChannelClient.h"
#include "urlcheck/BrowserChannel.h"

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
    EXPECT_EQ(Handle("7"), "7: 7");
    EXPECT_EQ(m_Judged, 3);
    EXPECT_EQ(Handle(""), "nothing");
    EXPECT_EQ(Handle("TBWAKEUP"), "wake-up");
    EXPECT_EQ(m_Judged, 3);
}

TEST_F(ChannelTest, AFirstFieldThatIsNoNumberBreaksTheContract) {
    EXPECT_EQ(Handle("TBWAKEUP\tCheck"), "broken: Browser channel: \"TBWAKEUP\" is no reply window: 13 Type mismatch");
    EXPECT_EQ(Handle("99999999999\tCheck"), "broken: Browser channel: \"99999999999\" is no reply window: 6 Overflow");
    EXPECT_EQ(Handle("\tCheck\tx"), "broken: Browser channel: \"\" is no reply window: 13 Type mismatch");
    for (const char* line : {"tbwakeup", "TBWAKEUP ", "0x10\tCheck", "1;2\tCheck", "a\r\nforged line\tCheck"}) {
        const Text answer = Handle(line);
        EXPECT_EQ(answer.rfind("broken: ", 0), 0U) << line;
        EXPECT_EQ(answer.find('\n'), Text::npos);
    }
    EXPECT_EQ(m_Judged, 0);
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

}  // namespace
}  // namespace tb
