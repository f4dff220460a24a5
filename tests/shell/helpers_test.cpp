#include <gtest/gtest.h>

#include <tuple>

#include "base/numbers.h"
#include "components/tbXML/Document.h"
#include "fakes/FakePlatform.h"
#include "fakes/Raised.h"
#include "shell/helpers/ProgramLog.h"
#include "shell/helpers/SettingValues.h"
#include "shell/helpers/ThisProcess.h"
#include "shell/helpers/Versions.h"
#include "shell/helpers/WindowPosition.h"

namespace tb {
namespace {

class HelpersTest : public ::testing::Test {
protected:
    HelpersTest() { MakeSettings(); }
    void MakeSettings(const Text& debugSwitch = "0") {
        m_App.Settings = std::make_shared<xmlINI>(
            xmlINI::Surroundings{m_System.Files, m_System.Clock, m_System.Dialogs, {}, "Trawlbeam"});
        Set("Main", DebugSwitch(), debugSwitch);
    }
    void Set(const Text& section, const Text& key, const Text& value) {
        m_App.Settings->WriteXMLString(section, key, value);
    }
    void SetGlobal(const Text& name, const Text& xml) {
        Document document;
        document.LoadXML(xml);
        m_App.Settings->ReplaceGlobals(name, document.Root());
    }

    FakeSystem m_System;
    App m_App{m_System, TestDeployment()};
    ProgramLog m_Log{m_App};
};

TEST(Versions, CompareByTheFirstTwoPartsThenTheThird) {
    const std::tuple<Text, Text, bool, bool> rows[] = {
        {"1.2", "1.2.0", false, true},       {"1.2.3", "1.2", true, true},       {"1.10.0", "1.9.9", true, true},
        {"1.2.3.9", "1.2.3.1", false, true}, {"1.65536.1", "2.0.0", true, true}, {"1.2.9", "1.3", false, false},
        {"1..3", "1.0.2", true, true}};
    for (const auto& [a, b, newer, orEqual] : rows) {
        EXPECT_EQ(IsVersionNewerThan(a, b, false), newer) << a << " " << b;
        EXPECT_EQ(IsVersionNewerThan(a, b, true), orEqual) << a << " " << b;
    }
    EXPECT_EQ(Raised([] { IsVersionNewerThan("32768", "1", false); }), 6);
    EXPECT_EQ(Raised([] { IsVersionNewerThan("1.x", "1", false); }), 13);
}

TEST(Versions, HttpDatesReadByColumns) {
    EXPECT_EQ(ParseHttpDate("Sun, 06 Nov 1994 08:49:37 GMT"), Date(CivilDate{1994, 11, 6, 8, 49, 37}));
    for (const char* text : {"", "Sun, 06 nov 1994 08:49:37", "Sun, 06 anF 1994 08:49:37"})
        EXPECT_EQ(Raised([&] { ParseHttpDate(text); }), 13) << text;
}

// A window of 6000 by 4000 on a screen of 15360 by 11520.
TEST_F(HelpersTest, AWindowComesBackWhereItCanBeReached) {
    const auto restored = [&](std::optional<double> top = {}, std::optional<double> left = {}) {
        const WindowPosition position = RestoreWindowPosition(m_App, "Main", {6000, 4000}, top, left);
        return ToText(position.Top) + " " + ToText(position.Left);
    };
    EXPECT_EQ(restored(), "3760 4680");
    EXPECT_EQ(restored(100, 20000), "100 14160");
    for (const auto& [top, left, expected] : std::vector<std::tuple<Text, Text, Text>>{
             {"99999", "99999", "10320 14160"}, {"-99999", "-99999", "-2800 -4800"}, {"", "0", "3760 0"}}) {
        Set("MAIN", "LASTTOP", top);
        Set("Main", "LastLeft", left);
        EXPECT_EQ(restored(), expected);
    }
    Set("Main", "LastTop", "high");
    EXPECT_EQ(Raised([&] { restored(); }), 13);
}

TEST_F(HelpersTest, ValuesComeFromTheSettingsThenTheDefaultsThenTheCaller) {
    EXPECT_EQ(GetTimerInterval(m_App, "EvilDB_Interval", 60), 60000);
    SetGlobal("TIMERS", "<TIMERS><T NAME='EVILDB_INTERVAL'>7</T><T NAME='EMPTY'/></TIMERS>");
    EXPECT_EQ(GetTimerInterval(m_App, "EvilDB_Interval", 60), 7000);
    EXPECT_EQ(GetTimerInterval(m_App, "Empty", 60), 60000);
    for (const auto& [value, expected] : std::vector<std::pair<Text, std::int32_t>>{
             {"0", 0}, {"5", 5000}, {"-1", 7000}, {"abc", 60000}, {"2147484", 60000}, {"2147483", 2147483000}}) {
        Set("Timers", "EVILDB_INTERVAL", value);
        EXPECT_EQ(GetTimerInterval(m_App, "EvilDB_Interval", 60), expected) << value;
    }
    EXPECT_TRUE(IsTimerEnabled(m_App, "EvilDB_Enabled"));
    Set("TIMERS", "EVILDB_ENABLED", "yes");
    EXPECT_FALSE(IsTimerEnabled(m_App, "EvilDB_Enabled"));
    EXPECT_EQ(GetDefaultedLong(m_App, "MAIN", "x", 42), 42);
    SetGlobal("MAIN", "<MAIN><V NAME='X'>17</V><V NAME='WORD'>w</V></MAIN>");
    EXPECT_EQ(GetDefaultedLong(m_App, "MAIN", "x", 42), 17);
    EXPECT_EQ(GetDefaultedLong(m_App, "MAIN", "word", 42), 0);
    Set("MAIN", "X", "5");
    EXPECT_EQ(GetDefaultedString(m_App, "MAIN", "x"), "5");
    Set("MAIN", "Key", "a b");
    EXPECT_EQ(GetClientKey(m_App, true), "a+b");
}

TEST_F(HelpersTest, MemoryIsTrimmedToTheLimitsUnlessBothAreNought) {
    FreeMemory(m_App, m_Log);
    Set("MAIN", "MINFREEMEM", "0");
    m_System.Processes.TrimFailure = 1314;
    FreeMemory(m_App, m_Log);
    EXPECT_EQ(m_System.TakeLog(), std::vector<Text>{"   FreeMemory: system error 1314"});
    Set("MAIN", "MAXFREEMEM", "0");
    FreeMemory(m_App, m_Log);
    EXPECT_EQ(m_System.Processes.Trims, (std::vector<Text>{"3145728-6291456", "0-6291456"}));
}

TEST_F(HelpersTest, LogLinesHaveDateLevelAndInDebugModeTheSession) {
    Text& written = m_System.Files.Contents["/app/Log/Trawlbeam202611.log"];
    m_App.SessionId = 48213;
    m_App.Settings.reset();
    m_System.Files.FailAt(1);
    m_Log.WriteLog("lost, and nothing else", LogLevel::Always);
    m_Log.WriteLog("before settings", LogLevel::Debug);
    MakeSettings();
    m_Log.WriteLog("not written", LogLevel::Debug);
    m_Log.WriteLog("text", LogLevel::Always);
    EXPECT_EQ(written, "11/21/2026 08:09:10 D before settings\r\n11/21/2026 08:09:10   text\r\n");
    written.clear();
    // The state is read again once a setting was written, and for settings made anew.
    Set("MAIN", DebugSwitch(), "anything");
    m_Log.WriteLog("text", LogLevel::Debug);
    MakeSettings("1");
    m_App.SessionId = 0;
    m_Log.WriteLog("text", LogLevel::Always);
    m_App.Settings.reset();
    m_Log.WriteLog("after", LogLevel::Debug);
    EXPECT_EQ(written,
              "11/21/2026 08:09:10 D 48213 text\r\n11/21/2026 08:09:10    text\r\n11/21/2026 08:09:10 D after\r\n");
}

TEST_F(HelpersTest, OldMonthsOfTheLogArePrunedUntilANameIsNoMonth) {
    m_App.Settings.reset();
    const auto& files = m_System.Files.Contents;
    for (const char* name : {"Trawlbeam202601.log", "Trawlbeam202605.log", "Other202001.log", "Trawlbeam.txt"}) {
        m_System.Files.Contents[std::filesystem::path("/app/Log") / name] = "x";
    }
    m_System.Files.ReadOnly.insert("/app/Log/Trawlbeam202601.log");
    m_System.Clock.Present = Date(CivilDate{2026, 5, 31, 23, 59, 59});
    m_Log.PruneLogFiles("C:\\X\\Log\\", 150);
    EXPECT_EQ(files.size(), 4U);
    m_System.Clock.Present = Date(CivilDate{2026, 6, 1, 0, 0, 0});
    m_Log.PruneLogFiles("C:\\X\\Log\\", 150);
    EXPECT_EQ(files.size(), 4U) << "one for another";
    EXPECT_EQ(files.at("/app/Log/Trawlbeam202606.log"),
              "06/01/2026 00:00:00 D Prune file: C:\\X\\Log\\\\Trawlbeam202601.log 01/01/2026\r\n");
    m_System.Files.Contents["/app/Log/Trawlbeam.log"] = "x";
    m_System.Clock.Present = Date(CivilDate{2027, 6, 1, 0, 0, 0});
    m_Log.PruneLogFiles("C:\\X\\Log\\", 150);
    EXPECT_EQ(files.at("/app/Log/Trawlbeam202706.log"),
              "06/01/2027 00:00:00   Error PruneLogFiles 13 Type mismatch\r\n");
    EXPECT_EQ(files.count("/app/Log/Trawlbeam202605.log"), 1U) << "the run ended at the odd name";
}

}  // namespace
}  // namespace tb
