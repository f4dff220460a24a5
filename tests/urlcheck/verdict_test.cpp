#include <gtest/gtest.h>

#include <limits>

#include "base/errors.h"
#include "components/tbBHBridge/ChannelClient.h"
#include "fakes/FakePlatform.h"
#include "fakes/Raised.h"
#include "fakes/RecordedLog.h"
#include "platform/posix/PosixFiles.h"
#include "urlcheck/BrowserChannel.h"
#include "urlcheck/StandaloneVerdictHost.h"
#include "urlcheck/UpdateStatistics.h"

namespace tb {
namespace {

using Lines = std::vector<Text>;

// The program around the verdict; what the verdict does to it is kept in `Log`, in order.
class FakeHost : public StandaloneVerdictHost {
public:
    FakeHost() : StandaloneVerdictHost(Log) {}
    Text GetXMLString(const Text& section, const Text& key, const Text& fallback) override {
        return UpperCase(section + "." + key) != "MAIN.ALERTSOUND" || Sound.empty() ? fallback : Sound;
    }
    bool IsDebugMode() override { return Debug; }
    bool IsOverride(const Text& url) override { return url == Override; }
    void AllowSite(const Text& url) override { Did("allow " + url); }
    void PlayAlertSound() override { Did("alert"); }
    UrlScore ScoreURL(const Text& url, const Text& addresses) override {
        Did("score " + url + " [" + addresses + "]");
        if (Country == "?") throw Error(ErrorNumber::InvalidCall);
        return {2.5, Country, false};
    }
    void ShowNotifyURL(const Text& title, const Text& message, const Text& url, std::int32_t width, std::int32_t height,
                       std::int32_t seconds, std::int32_t icon, const Text& callback) override {
        Did("notify " + title + "|" + message + "|" + url + "|" + std::to_string(width) + "x" + std::to_string(height) +
            " " + std::to_string(seconds) + " " + std::to_string(icon) + callback);
    }
    void ShowMessage(const Text& prompt, std::int32_t buttons) override {
        Did("message " + std::to_string(buttons) + " " + prompt);
        if (OnMessage) OnMessage();
    }
    void DisplayDebugMessage(const Text& text) override { Did("debug " + text); }
    void Did(const Text& what) { Log.Lines.push_back(what); }

    // The setting of the alert sound.
    Text Sound;
    Text Override = "none";
    Text Country;
    std::function<void()> OnMessage;
    bool Debug = false;
    RecordedLog Log;
};

class VerdictTest : public ::testing::Test {
protected:
    VerdictTest() {
        m_List->AddToDB("http://evil.example", "2", "11/01/2026");
        m_List->AddToDB("http://10.1.2.3", "2", "address");
        m_List->LogMessage.Connect([this](const Text& line, LogLevel level) { m_Host.WriteLog(line, level); });
    }

    Text Ask(std::vector<Text> args) {
        args.insert(args.begin(), "1");
        Text reply = "left over";
        m_Verdict->CheckEvil(args, reply);
        return reply;
    }
    Lines Done() { return m_Host.Log.Take(); }

    PosixFiles m_Files;
    FakeHost m_Host;
    std::shared_ptr<EvilDB> m_List = std::make_shared<EvilDB>(m_Files, m_Host, std::filesystem::path());
    std::shared_ptr<UrlVerdict> m_Verdict = std::make_shared<UrlVerdict>(m_List, m_Host);
    BrowserChannel m_Channel{m_Verdict};
    const Text m_Block = "Validated: 11/01/2026  (Category: Banking or Credit Card Spoof)";
    const Text m_AddressBlock = "Validated: address  (Category: Banking or Credit Card Spoof)";
};

TEST_F(VerdictTest, BlocksPassesAndLogsByLevel) {
    EXPECT_EQ(Ask({"Check", "http://www.evil.example/%61/"}), m_Block);
    EXPECT_EQ(Ask({"Check", "http://ok.example/"}), "OK");
    EXPECT_EQ(Ask({"Check", ""}), "OK");
    EXPECT_EQ(Done(), (Lines{"0 Checking: http://www.evil.example/a (" + m_Block + ")",
                             "1 Checking: http://ok.example (OK)", "1 Checking: http: (OK)"}));
    EXPECT_EQ(Ask({"Check", "http://0x0A010203:80/x"}), "OK") << "the port stays and evades";
    EXPECT_EQ(Ask({"Check", "http://167838211/x"}), m_AddressBlock);
    EXPECT_EQ(Done().front(), "debug Normalize IP: http://0x0A010203:80/x --> http://10.1.2.3:80/x");
    // The line of the log is one line.
    m_List->AddToDB("http://forged.example", "2", "a\r\nb");
    EXPECT_EQ(Ask({"Check", "http://forged.example"}), "Validated: a\r\nb  (Category: Banking or Credit Card Spoof)");
    EXPECT_EQ(Done(), Lines{"0 Checking: http://forged.example (Validated: ab  (Category: Banking or Credit Card "
                            "Spoof))"});
}

TEST_F(VerdictTest, TheAlertSoundsOnAHitWhenTheSettingIsExactlyOneAndAnOverrideSilencesEverything) {
    for (const Text setting : {"", "01", "1"}) {
        m_Host.Sound = setting;
        Ask({"Check", "http://ok.example"});
        Ask({"Check", "http://evil.example"});
        EXPECT_EQ(Done().size(), setting == "1" ? 3U : 2U) << "a page that passes is silent";
    }
    m_Host.Override = "http://evil.example/a";
    m_Host.Debug = true;
    m_Host.Country = "X";
    EXPECT_EQ(Ask({"Check", "http://evil.example/a/", "10.1.2.3"}), "OK");
    EXPECT_EQ(Done(), Lines{"1 Checking: http://evil.example/a (Override)"});
}

TEST_F(VerdictTest, AddressesAreAskedInOrderUntilOneHits) {
    EXPECT_EQ(Ask({"Check", "http://ok.example", " 1.1.1.1  10.1.2.3 10.1.2.3", "ignored"}), m_AddressBlock);
    EXPECT_EQ(Done(), (Lines{"1 CheckEvil found blocked IP address: 10.1.2.3",
                             "0 Checking: http://ok.example (" + m_AddressBlock + ")"}));
    EXPECT_EQ(Ask({"Check", "http://ok.example", "0x0A010203"}), "OK") << "addresses are not normalised";
}

TEST_F(VerdictTest, TheCountryPopupIsForDebugModeOnly) {
    m_Host.Country = "Atlantis";
    const auto asked = [this](const std::vector<Text>& fields) {
        EXPECT_EQ(Ask(fields), "OK") << "also when the popup fails";
        return Done();
    };
    EXPECT_EQ(asked({"Check", "http://ok.example", ""}).size(), 1U);
    m_Host.Debug = true;
    EXPECT_EQ(asked({"Check", "http://ok.example"}).size(), 1U) << "no address field, no popup";
    EXPECT_EQ(asked({"Check", "http://ok.example/1234", ""}),
              (Lines{"score http://ok.example/1234 []",
                     "notify Trawlbeam Suspicious Sites|http://ok.example/1234... Atlantis "
                     "2.5|http://ok.example/1234|3600x1400 25 64",
                     "1 Checking: http://ok.example/1234 (OK)"}));
    m_Host.Country = "?";
    EXPECT_EQ(asked({"Check", "http://ok.example", "x"})[1], "0 CheckEvil error: 5 Invalid procedure call or argument");
}

TEST_F(VerdictTest, AllowTakesTheFieldAsItCameAndMissingFieldsAreLogged) {
    EXPECT_EQ(Ask({"Allow", "Evil.Example/%41/"}), "");
    EXPECT_EQ(Done(), (Lines{"allow Evil.Example/%41/", "1 Checking:  ()"}));
    for (const std::vector<Text>& fields : {std::vector<Text>{}, {"Check"}, {"Allow"}}) EXPECT_EQ(Ask(fields), "");
    EXPECT_EQ(Done(), Lines(3, "0 CheckEvil error: 9 Subscript out of range"));
}

TEST_F(VerdictTest, AListThatGoesIsHeldToTheEndOfItsRequest) {
    m_Host.OnMessage = [this] {
        m_Verdict->DropList();
        m_List.reset();
    };
    EXPECT_EQ(Ask({"check", "x"}), "");
    EXPECT_EQ(Done(), (Lines{"message 16 Unknown Command: 1   check   x", "1 Checking:  ()"}));
    EXPECT_EQ(Ask({"Check", "http://evil.example"}), "");
    EXPECT_EQ(Done(), Lines{"0 CheckEvil error: 91 Object variable or With block variable not set"});
}

TEST_F(VerdictTest, TheChannelSplitsALineAndAnswersItsWindow) {
    const auto handle = [this](const Text& line) {
        const char* const kinds[] = {"nothing", "wake-up", "reply", "broken"};
        ChannelResult result{ChannelResult::Kind::Reply, 5, "of a line before"};
        m_Channel.Handle(line, result);
        return kinds[static_cast<int>(result.What)] + (" " + std::to_string(result.ReplyWindow)) + ": " + result.Text;
    };
    EXPECT_EQ(handle("66066\tCheck\thttp://ok.example/\t10.1.2.3"), "reply 66066: " + m_AddressBlock);
    Done();
    EXPECT_EQ(handle(" -5 \tNope\t\tx"), "reply -5: ");
    EXPECT_EQ(Done().front(), "message 16 Unknown Command:  -5    Nope      x");
    EXPECT_EQ(handle(""), "nothing 0: ");
    EXPECT_EQ(handle("TBWAKEUP"), "wake-up 0: ");
    EXPECT_EQ(handle("99999999999\tCheck"),
              "broken 0: Browser channel: \"99999999999\" is no reply window: 6 Overflow");
    for (const char* line : {"TBWAKEUP\tCheck", "tbwakeup", "\tCheck\tx", "0x10\tCheck", "a\r\nforged line\tCheck"}) {
        const Text answer = handle(line);
        EXPECT_TRUE(answer.starts_with("broken ")) << line;
        EXPECT_EQ(answer.find('\n'), Text::npos);
    }
    EXPECT_EQ(Done(), Lines());
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
