#include <gtest/gtest.h>

#include <tuple>

#include "base/numbers.h"
#include "components/tbXML/Document.h"
#include "fakes/FakePlatform.h"
#include "fakes/Raised.h"
#include "fakes/RecordedLog.h"
#include "refdata/Components.h"
#include "shell/helpers/SettingValues.h"
#include "shell/helpers/SystemInfo.h"
#include "shell/helpers/ThisProcess.h"
#include "shell/helpers/Versions.h"
#include "shell/helpers/WindowPosition.h"
#include "shell/helpers/cRegistry.h"

namespace tb {
namespace {

class HelpersTest : public ::testing::Test {
protected:
    HelpersTest() {
        m_App.Settings = std::make_shared<xmlINI>(
            xmlINI::Surroundings{m_System.Files, m_System.Clock, m_System.Dialogs, {}, "Trawlbeam"});
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
    RecordedLog m_Log;
};

TEST(Versions, CompareByTheFirstTwoPartsThenTheThird) {
    struct Row {
        const char* A;
        const char* B;
        bool Newer;
        bool OrEqual;
    };
    for (const Row& row :
         {Row{"1.2", "1.2.0", false, true}, Row{"1.2.3", "1.2", true, true}, Row{"1.2.3", "1.2.3", false, true},
          Row{"1.10.0", "1.9.9", true, true}, Row{"1.2.3.9", "1.2.3.1", false, true},
          Row{"1.65536.1", "2.0.0", true, true}, Row{"2", "1.65535.9", true, true}, Row{"1.2.9", "1.3", false, false},
          Row{"", "..", false, true}, Row{"1..3", "1.0.2", true, true}}) {
        EXPECT_EQ(IsVersionNewerThan(row.A, row.B, false), row.Newer) << row.A << " " << row.B;
        EXPECT_EQ(IsVersionNewerThan(row.A, row.B, true), row.OrEqual) << row.A << " " << row.B;
    }
    EXPECT_EQ(Raised([] { IsVersionNewerThan("32768", "1", false); }), 6);
    EXPECT_EQ(Raised([] { IsVersionNewerThan("1.x", "1", false); }), 13);
}

TEST(Versions, HttpDatesReadByColumns) {
    EXPECT_EQ(ParseHttpDate("Sun, 06 Nov 1994 08:49:37 GMT"), Date(CivilDate{1994, 11, 6, 8, 49, 37}));
    for (const char* text :
         {"Sunday, 06-Nov-94 08:49:37 GMT", "", "Sun, 06 nov 1994 08:49:37", "Sun, 06 anF 1994 08:49:37"}) {
        EXPECT_EQ(Raised([&] { ParseHttpDate(text); }), 13) << text;
    }
}

// A window of 6000 by 4000 on a screen of 15360 by 11520.
TEST_F(HelpersTest, AWindowComesBackWhereItCanBeReached) {
    const auto restored = [&](std::optional<double> top = {}, std::optional<double> left = {}) {
        const WindowPosition position = RestoreWindowPosition(m_App, "Main", {6000, 4000}, top, left);
        return ToText(position.Top) + " " + ToText(position.Left);
    };
    EXPECT_EQ(restored(), "3760 4680");
    EXPECT_EQ(restored(100, 20000), "100 14160");
    for (const auto& [top, left, expected] :
         std::vector<std::tuple<Text, Text, Text>>{{"99999", "99999", "10320 14160"},
                                                   {"-99999", "-99999", "-2800 -4800"},
                                                   {"-7", "7.5", "-7 7.5"},
                                                   {"", "0", "3760 0"}}) {
        Set("MAIN", "LASTTOP", top);
        Set("Main", "LastLeft", left);
        EXPECT_EQ(restored(), expected);
    }
    Set("Main", "LastTop", "high");
    EXPECT_EQ(Raised([&] { restored(); }), 13);
}

TEST_F(HelpersTest, TimersComeFromTheSettingsThenTheDefaultsThenTheCaller) {
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
}

TEST_F(HelpersTest, ValuesComeFromTheSettingsThenTheDefaultsThenTheCaller) {
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
    EXPECT_EQ(m_Log.Take(), std::vector<Text>{"0 FreeMemory: system error 1314"});
    Set("MAIN", "MAXFREEMEM", "0");
    FreeMemory(m_App, m_Log);
    EXPECT_EQ(m_System.Processes.Trims, (std::vector<Text>{"3145728-6291456", "0-6291456"}));
}

TEST_F(HelpersTest, TheRegistryCursorTellsWhatFailed) {
    cRegistry registry(m_System.Registry);
    registry.SectionKey = "Software\\Trawlbeam";
    registry.ValueKey = "Name";
    registry.Default = "d";
    registry.Value("v");
    EXPECT_EQ(registry.Value(), "v");
    registry.DeleteValue();
    EXPECT_EQ(registry.Value(), "d");
    m_System.Registry.Refuses = true;
    for (const std::function<void()>& call :
         std::vector<std::function<void()>>{[&] { registry.Value("v"); }, [&] { registry.CreateKey(); },
                                            [&] { registry.DeleteKey(); }, [&] { registry.DeleteValue(); }}) {
        EXPECT_THROW(call(), RuntimeError);
    }
}

}  // namespace
}  // namespace tb
