#include <gtest/gtest.h>

#include <limits>

#include "components/tbBHBridge/ChannelClient.h"
#include "fakes/FakePlatform.h"
#include "fakes/Raised.h"
#include "fakes/RecordedLog.h"
#include "urlcheck/UpdateStatistics.h"

namespace tb {
namespace {

class FakeWindows : public WindowText {
public:
    WindowHandle FindTopLevel(const Text& className, const Text& caption) override {
        return caption == "Trawlbeam Tray" && className == Class ? 10 : 0;
    }
    WindowHandle FindChild(WindowHandle parent, const Text& className) override {
        return parent == 10 && className == BoxClass ? 11 : 0;
    }
    void SendText(WindowHandle window, const Text& text) override { Sent += std::to_string(window) + "<" + text + ">"; }

    Text Class, BoxClass, Sent;
};

TEST(ChannelClient, FindsTheTextBoxByEitherPairOfClasses) {
    FakeWindows windows;
    ChannelClient client(windows);
    EXPECT_FALSE(client.Locate() || client.Send(5, "Check\tx") || client.WakeUp());
    windows.Class = "ThunderRT6FormDC";
    windows.BoxClass = "ThunderTextBox";
    EXPECT_FALSE(client.Locate()) << "a mixed pair is no channel";
    windows.BoxClass = "ThunderRT6TextBox";
    EXPECT_TRUE(client.Locate());
    windows.Class = "ThunderFormDC";
    windows.BoxClass = "ThunderTextBox";
    EXPECT_TRUE(client.Locate() && client.Send(-5, "Check\tx") && client.WakeUp());
    EXPECT_EQ(windows.Sent, "11<-5\tCheck\tx>11<TBWAKEUP>");
}

TEST(UpdateStatistics, BeginsAnewWhenADayHasPassed) {
    FakeClock clock;
    clock.Present = Date(CivilDate{2005, 11, 30, 23, 0, 0});
    RecordedLog log;
    UpdateStatistics statistics(clock, log);
    statistics.EvilAdded(1, 0);
    clock.Pass(3600);
    statistics.EvilAdded(2, 1);
    EXPECT_EQ(Raised([&] { statistics.EvilAdded(std::numeric_limits<std::int32_t>::max(), 0); }), 6);
    clock.Pass(1);
    statistics.EvilAdded(0, 5);
    EXPECT_EQ(log.Take(),
              (std::vector<Text>{"1 ***Display Statistics 11/30/2005 +1 -0", "1 ***Display Statistics 11/30/2005 +3 -1",
                                 "1 ***Display Statistics 12/01/2005 +0 -5"}));
}

}  // namespace
}  // namespace tb
