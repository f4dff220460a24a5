#include <gtest/gtest.h>

#include <map>

#include "base/errors.h"
#include "fakes/RecordedLog.h"
#include "platform/posix/PosixFiles.h"
#include "sitedb/BuiltInCategories.h"
#include "urlcheck/BrowserChannel.h"

namespace tb {
namespace {

using Lines = std::vector<Text>;

// The program around the verdict; what the verdict does to it is kept in `Log`, in order.
class FakeHost : public VerdictHost, public EvilDBHost {
public:
    void WriteLog(const Text& message, LogLevel level) noexcept override { Log.WriteLog(message, level); }
    Text GetXMLString(const Text& section, const Text& key, const Text& fallback) override {
        const auto found = Settings.find(UpperCase(section) + "." + UpperCase(key));
        return found == Settings.end() ? fallback : found->second;
    }
    bool IsDebugMode() override { return Debug; }
    Text ProductName() override { return "Product"; }
    bool IsOverride(const Text& url) override { return url == Override; }
    void AllowSite(const Text& url) override { Did("allow " + url); }
    void PlayAlertSound() override { Did("alert"); }
    UrlScore ScoreURL(const Text& url, const Text& addresses) override {
        Did("score " + url + " [" + addresses + "]");
        if (Country == "?") throw Error(ErrorNumber::InvalidCall);
        return {2.5, Country, false};
    }
    void ShowNotifyURL(const Text& title, const Text& message, const Text& url, std::int32_t width, std::int32_t height,
                       std::int32_t seconds, std::int32_t iconFlags, const Text& callback) override {
        Did("notify " + title + "|" + message + "|" + url + "|" + std::to_string(width) + "|" + std::to_string(height) +
            "|" + std::to_string(seconds) + "|" + std::to_string(iconFlags) + "|" + callback);
    }
    void ShowMessage(const Text& prompt, std::int32_t buttons) override {
        Did("message " + std::to_string(buttons) + " " + prompt);
        if (OnMessage) OnMessage();
    }
    void DisplayDebugMessage(const Text& text) override { Did("debug " + text); }
    Text CategoryName(const Text& id) override { return BuiltInCategoryName(id); }

    void Did(const Text& what) { Log.Lines.push_back(what); }

    std::map<Text, Text> Settings;
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

    Text Ask(const std::vector<Text>& fields) {
        std::vector<Text> args{"1"};
        args.insert(args.end(), fields.begin(), fields.end());
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
}

TEST_F(VerdictTest, TheLogLineIsOneLine) {
    m_List->AddToDB("http://forged.example", "2", "a\r\nb");
    EXPECT_EQ(Ask({"Check", "http://forged.example"}), "Validated: a\r\nb  (Category: Banking or Credit Card Spoof)");
    EXPECT_EQ(Done(), Lines{"0 Checking: http://forged.example (Validated: ab  (Category: Banking or Credit Card "
                            "Spoof))"});
}

TEST_F(VerdictTest, AnOverrideBeatsTheListAndSilencesEverything) {
    m_Host.Override = "http://evil.example/a";
    m_Host.Settings["MAIN.ALERTSOUND"] = "1";
    m_Host.Debug = true;
    m_Host.Country = "X";
    EXPECT_EQ(Ask({"Check", "http://evil.example/a/", "10.1.2.3"}), "OK");
    EXPECT_EQ(Done(), Lines{"1 Checking: http://evil.example/a (Override)"});
}

TEST_F(VerdictTest, AddressesAreAskedInOrderUntilOneHits) {
    EXPECT_EQ(Ask({"Check", "http://ok.example", " 1.1.1.1  10.1.2.3 10.1.2.3", "ignored"}), m_AddressBlock);
    EXPECT_EQ(Done(), (Lines{"1 CheckEvil found blocked IP address: 10.1.2.3",
                             "0 Checking: http://ok.example (" + m_AddressBlock + ")"}));
    EXPECT_EQ(Ask({"Check", "http://ok.example", "   "}), "OK");
    EXPECT_EQ(Ask({"Check", "http://evil.example", "10.1.2.3"}), m_Block);
    EXPECT_EQ(Ask({"Check", "http://ok.example", "0x0A010203"}), "OK") << "addresses are not normalised";
}

TEST_F(VerdictTest, TheAlertSoundsOnAHitWhenTheSettingIsExactlyOne) {
    for (const Text setting : {"", "01", "1"}) {
        m_Host.Settings["MAIN.ALERTSOUND"] = setting;
        EXPECT_EQ(Ask({"Check", "http://ok.example"}), "OK");
        EXPECT_EQ(Done().size(), 1U) << "a page that passes is silent";
        EXPECT_EQ(Ask({"Check", "http://evil.example"}), m_Block);
        EXPECT_EQ(Done().size(), setting == "1" ? 2U : 1U);
    }
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
                     "notify Product Suspicious Sites|http://ok.example/1234... Atlantis "
                     "2.5|http://ok.example/1234|3600|1400|25|64|",
                     "1 Checking: http://ok.example/1234 (OK)"}));
    m_Host.Country = "?";
    EXPECT_EQ(asked({"Check", "http://ok.example", "x"})[1], "0 CheckEvil error: 5 Invalid procedure call or argument");
}

TEST_F(VerdictTest, AllowTakesTheFieldAsItCameAndMissingFieldsAreLogged) {
    EXPECT_EQ(Ask({"Allow", "Evil.Example/%41/"}), "");
    EXPECT_EQ(Ask({"allow", "x"}), "");
    EXPECT_EQ(Done(), (Lines{"allow Evil.Example/%41/", "1 Checking:  ()", "message 16 Unknown Command: 1   allow   x",
                             "1 Checking:  ()"}));
    for (const std::vector<Text>& fields : {std::vector<Text>{}, {"Check"}, {"Allow"}}) EXPECT_EQ(Ask(fields), "");
    EXPECT_EQ(Done(), Lines(3, "0 CheckEvil error: 9 Subscript out of range"));
}

TEST_F(VerdictTest, AListThatGoesIsHeldToTheEndOfItsRequest) {
    m_Host.OnMessage = [this] {
        m_Verdict->DropList();
        m_List.reset();
    };
    EXPECT_EQ(Ask({"Nope", "x"}), "");
    EXPECT_EQ(Done(), (Lines{"message 16 Unknown Command: 1   Nope   x", "1 Checking:  ()"}));
    EXPECT_EQ(Ask({"Check", "http://evil.example"}), "");
    EXPECT_EQ(Done(), Lines{"0 CheckEvil error: 91 Object variable or With block variable not set"});
}

TEST_F(VerdictTest, TheChannelSplitsALineAndAnswersItsWindow) {
    const auto handle = [this](const Text& line) {
        const ChannelResult result = m_Channel.Handle(line);
        switch (result.What) {
        case ChannelResult::Kind::Nothing: return Text("nothing");
        case ChannelResult::Kind::WakeUp: return Text("wake-up");
        case ChannelResult::Kind::Broken: return "broken: " + result.Text;
        case ChannelResult::Kind::Reply: break;
        }
        return std::to_string(result.ReplyWindow) + ": " + result.Text;
    };
    EXPECT_EQ(handle("66066\tCheck\thttp://ok.example/\t10.1.2.3"), "66066: " + m_AddressBlock);
    Done();
    EXPECT_EQ(handle(" -5 \tNope\t\tx"), "-5: ");
    EXPECT_EQ(Done().front(), "message 16 Unknown Command:  -5    Nope      x");
    EXPECT_EQ(handle(""), "nothing");
    EXPECT_EQ(handle("TBWAKEUP"), "wake-up");
    ChannelResult used{ChannelResult::Kind::Reply, 5, "old"};
    m_Channel.Handle("", used);
    EXPECT_EQ(std::to_string(used.ReplyWindow) + used.Text, "0");
    EXPECT_EQ(handle("99999999999\tCheck"), "broken: Browser channel: \"99999999999\" is no reply window: 6 Overflow");
    for (const char* line : {"TBWAKEUP\tCheck", "\tCheck\tx", "tbwakeup", "TBWAKEUP ", "0x10\tCheck", "1;2\tCheck",
                             "a\r\nforged line\tCheck"}) {
        const Text answer = handle(line);
        EXPECT_TRUE(answer.starts_with("broken: ")) << line;
        EXPECT_EQ(answer.find('\n'), Text::npos);
    }
    EXPECT_EQ(Done(), Lines());
}

}  // namespace
}  // namespace tb
