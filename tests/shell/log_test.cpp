#include <gtest/gtest.h>

#include "fakes/FakePlatform.h"
#include "shell/helpers/ProgramLog.h"

namespace tb {
namespace {

using Lines = std::vector<Text>;

const Text LogFile = "/app/Log/Trawlbeam202611.log";

class LogTest : public ::testing::Test {
protected:
    LogTest() { m_App.SessionId = 48213; }
    void MakeSettings(const Text& debugSwitch = "0") {
        m_App.Settings = std::make_shared<xmlINI>(
            xmlINI::Surroundings{m_System.Files, m_System.Clock, m_System.Dialogs, {}, "Trawlbeam"});
        m_App.Settings->WriteXMLString("Main", DebugSwitch(), debugSwitch);
    }
    Text& Written() { return m_System.Files.Contents[LogFile]; }

    FakeSystem m_System;
    App m_App{m_System, TestDeployment()};
    ProgramLog m_Log{m_App};
};

TEST_F(LogTest, LinesHaveDateLevelAndInDebugModeTheSession) {
    m_Log.WriteLog("before settings", LogLevel::Debug);
    MakeSettings();
    m_Log.WriteLog("not written", LogLevel::Debug);
    m_Log.WriteLog("text", LogLevel::Always);
    EXPECT_EQ(Written(), "11/21/2026 08:09:10 D before settings\r\n11/21/2026 08:09:10   text\r\n");
    Written().clear();
    // The state is read again once a setting was written, and for settings made anew.
    m_App.Settings->WriteXMLString("MAIN", DebugSwitch(), "anything");
    m_Log.WriteLog("text", LogLevel::Debug);
    MakeSettings("1");
    m_App.SessionId = 0;
    m_Log.WriteLog("text", LogLevel::Always);
    m_App.Settings.reset();
    m_Log.WriteLog("after", LogLevel::Debug);
    EXPECT_EQ(Written(),
              "11/21/2026 08:09:10 D 48213 text\r\n11/21/2026 08:09:10    text\r\n11/21/2026 08:09:10 D after\r\n");
}

TEST_F(LogTest, ALineThatCannotBeWrittenIsLostAndNothingElse) {
    m_System.Files.FailAt(1);
    m_Log.WriteLog("lost", LogLevel::Always);
    m_Log.WriteLog("kept", LogLevel::Always);
    EXPECT_EQ(m_System.TakeLog(), Lines{"   kept"});
}

TEST_F(LogTest, OldMonthsArePrunedUntilANameIsNoMonth) {
    const auto names = [this] {
        Lines left;
        for (const auto& [path, content] : m_System.Files.Contents) left.push_back(path.filename().string());
        return Join(left, " ");
    };
    for (const char* name : {"Trawlbeam202601.log", "Trawlbeam202605.log", "Other202001.log", "Trawlbeam.txt"}) {
        m_System.Files.Contents[std::filesystem::path("/app/Log") / name] = "x";
    }
    m_System.Files.ReadOnly.insert("/app/Log/Trawlbeam202601.log");
    m_System.Clock.Present = Date(CivilDate{2026, 5, 31, 23, 59, 59});
    m_Log.PruneLogFiles("C:\\X\\Log\\", 150);
    EXPECT_EQ(names(), "Other202001.log Trawlbeam.txt Trawlbeam202601.log Trawlbeam202605.log");
    m_System.Clock.Present = Date(CivilDate{2026, 6, 1, 0, 0, 0});
    m_Log.PruneLogFiles("C:\\X\\Log\\", 150);
    EXPECT_EQ(m_System.Files.Contents["/app/Log/Trawlbeam202606.log"],
              "06/01/2026 00:00:00 D Prune file: C:\\X\\Log\\\\Trawlbeam202601.log 01/01/2026\r\n");
    EXPECT_EQ(m_System.Files.Contents.count("/app/Log/Trawlbeam202601.log"), 0U);
    m_System.Files.Contents["/app/Log/Trawlbeam.log"] = "x";
    m_System.Clock.Present = Date(CivilDate{2027, 6, 1, 0, 0, 0});
    m_Log.PruneLogFiles("C:\\X\\Log\\", 150);
    EXPECT_EQ(m_System.Files.Contents["/app/Log/Trawlbeam202706.log"],
              "06/01/2027 00:00:00   Error PruneLogFiles 13 Type mismatch\r\n");
    EXPECT_EQ(m_System.Files.Contents.count("/app/Log/Trawlbeam202605.log"), 1U) << "the run ended at the odd name";
}

}  // namespace
}  // namespace tb
