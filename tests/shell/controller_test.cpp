#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/RecordedLog.h"
#include "shell/ShellRig.h"
#include "shell/helpers/GeneralHelpers.h"
#include "sitedb/codec/Encryption.h"

namespace tb {
namespace {

using Lines = std::vector<Text>;

TEST(Controller, ExitWaitsForTheLastActivity) {
    RecordedLog log;
    cController controller;
    controller.LogMessage.Connect([&](const Text& line, LogLevel level) { log.WriteLog(line, level); });
    controller.Shutdown.Connect([&] { log.Lines.push_back("Shutdown"); });
    EXPECT_TRUE(controller.StartActivity("A", true));
    EXPECT_TRUE(controller.StartActivity("quiet", false));
    controller.NeedToExit(true);
    EXPECT_FALSE(controller.StartActivity("B", false));
    log.Take();
    controller.EndActivity("quiet", false);
    EXPECT_FALSE(controller.CanExit());
    EXPECT_TRUE(log.Take().empty());
    controller.EndActivity("A", true);
    EXPECT_EQ(log.Take(), (Lines{"1 Controller EndActivity (Count = 0): A", "Shutdown"}));
    // The owed shutdown stays on record, whatever happens to the wish to exit.
    controller.EndActivity("B", false);
    EXPECT_EQ(log.Take(), (Lines{"1 Controller EndActivity UNDERRUN: B", "Shutdown"}));
    controller.NeedToExit(false);
    EXPECT_TRUE(controller.StartActivity("C", false));
    controller.EndActivity("C", false);
    EXPECT_EQ(log.Take(), (Lines{"1 Controller NeedToExit = False", "Shutdown"}));
    EXPECT_EQ(controller.ActivityCount(), 0);
}

class ControllerWindowTest : public ::testing::Test {
protected:
    void Run(const Text& settings = {}, const std::function<void(FakeSystem&)>& prepare = {}) {
        m_Rig = std::make_unique<ShellRig>(settings);
        if (prepare) prepare(m_Rig->System);
        ASSERT_TRUE(m_Rig->Chain->Main());
        m_Rig->System.TakeLog();
        m_Rig->Services.Take();
    }
    frmController& Controller() { return m_Rig->Controller(); }
    // Ticks of the update timer, in which the numbers of those with a cycle are told.
    Text CyclesIn(int ticks) {
        Text cycles;
        for (int tick = 1; tick <= ticks; ++tick) {
            Controller().tmUpdate.Tick();
            if (!m_Rig->Services.Take().empty()) cycles += std::to_string(tick) + " ";
        }
        return cycles;
    }

    std::unique_ptr<ShellRig> m_Rig;
};

TEST_F(ControllerWindowTest, TheTrayComesLastWithItsMenu) {
    const auto keys = [this] {
        std::vector<Text> found;
        for (std::int32_t index = 0; Controller().SysTray()->MenuItem(index) != nullptr; ++index) {
            found.push_back(Controller().SysTray()->MenuItem(index)->Key());
        }
        return Join(found, " ");
    };
    Run();
    EXPECT_EQ(keys(), "dblclick  menu1 menu2 menu3 trawlweb  trawldrop  help about  exit");
    Run({}, [](FakeSystem& system) { system.Machine.System = {4, 0, 1381, 2}; });
    EXPECT_EQ(keys(), "dblclick  menu1 menu2 menu3 trawlweb  help about  exit") << "no drop zone";
    EXPECT_THAT(m_Rig->Gates.Passed, testing::Not(testing::Contains("drop zone")));
    Run(ShellRig::Section("Main", DebugSwitch(), "1") + ShellRig::Section("Desktop", "Show", "0"));
    EXPECT_EQ(keys(), "dblclick  menu1 menu2 menu3 trawlweb  diag  trawldrop  help about  exit");
    EXPECT_EQ(Controller().Caption(), "Trawlbeam Controller Debug");
    EXPECT_TRUE(Controller().Visible());
}

TEST_F(ControllerWindowTest, ARequestIsJudgedWithTheProgramsSettings) {
    const Text wave("RIFF\x24\0\0\0WAVEfmt \x10\0\0\0\x01\0\x01\0\x40\x1f\0\0\x40\x1f\0\0\x01\0\x08\0data\0\0\0\0", 44);
    Run(ShellRig::Section("Main", "AlertSound", "1"),
        [&](FakeSystem& system) { system.Resources.Customs["ALERT"] = wave; });
    Controller().Sites()->AddToDB("http://evil.example", "2", "d");
    Text reply;
    Controller().CheckEvil({"1", "Check", "http://evil.example/"}, reply);
    EXPECT_EQ(reply, "Validated: d  (Category: Banking or Credit Card Spoof)");
    EXPECT_EQ(m_Rig->Device.Played.size(), 1U);
}

TEST_F(ControllerWindowTest, TheDeploymentDecidesWhetherTheListIsGuarded) {
    for (const bool guarded : {false, true}) {
        Deployment product = TestDeployment();
        product.ListGuard = guarded;
        product.BuildStamp = "202611010000";
        ShellRig rig({}, product);
        rig.Web.Replies["MalDB.aspx"] = EncryptStringChk("999912312359\n1\n");
        ASSERT_TRUE(rig.Chain->Main());
        EXPECT_EQ(rig.Controller().Sites()->LastTimestamp(), guarded ? "200001010000" : "999912312359");
    }
}

TEST_F(ControllerWindowTest, AnUpdateCycleComesEveryPeriodAndOneTick) {
    for (const auto& [seconds, cycles] :
         std::vector<std::pair<Text, Text>>{{"5", "6 12 18 "}, {"0", "1 2 3 4 5 6 7 8 9 10 "}}) {
        Run(ShellRig::Section("Timers", "EVILDB_INTERVAL", seconds));
        EXPECT_EQ(CyclesIn(seconds == "0" ? 10 : 20), cycles);
    }
    Run();
    EXPECT_EQ(CyclesIn(130), "61 122 ");
}

TEST_F(ControllerWindowTest, ACycleUpdatesReportsAndLooksForTheProgram) {
    Run(ShellRig::Section("Timers", "EVILDB_INTERVAL", "0") + ShellRig::Section("Main", "KEY", "me"));
    m_Rig->Program.Settings->WriteXMLString("Main", "AutoUpdate", "0");
    Controller().tmUpdate.Tick();
    EXPECT_EQ(m_Rig->Services.Take(), (Lines{"update me", "versions"}));
    m_Rig->Services.ReportsTaken = true;
    Controller().tmUpdate.Tick();
    m_Rig->System.Clock.Pass(Date::SecondsPerDay);
    m_Rig->Services.Take();
    Controller().tmUpdate.Tick();
    EXPECT_EQ(m_Rig->Services.Take(), Lines{"update me"}) << "a day is not yet over";
    m_Rig->System.Clock.Pass(1);
    m_Rig->Program.Settings->WriteXMLString("Main", "AutoUpdate", "1");
    m_Rig->Services.Reason.clear();
    Controller().tmUpdate.Tick();
    EXPECT_EQ(m_Rig->Services.Take(), (Lines{"update me", "versions", "program update"}));
    // While a cycle waits for the network no other begins, and afterwards the timer follows the list's switch alone.
    m_Rig->Services.OnUpdate = [this] { EXPECT_FALSE(Controller().tmUpdate.Enabled()); };
    m_Rig->Program.Settings->WriteXMLString("TIMERS", "EVILDB_ENABLED", "0");
    Controller().tmUpdate.Tick();
    EXPECT_TRUE(m_Rig->Services.Take().empty()) << "switched off: due, and nothing done";
    EXPECT_TRUE(Controller().tmUpdate.Enabled());
    m_Rig->Program.Settings->WriteXMLString("TIMERS", "EVILDB_ENABLED", "1");
    m_Rig->Services.OnUpdate = [this] { m_Rig->Program.Settings->WriteXMLString("TIMERS", "EVILDB_ENABLED", "0"); };
    Controller().tmUpdate.Tick();
    EXPECT_FALSE(Controller().tmUpdate.Enabled());
}

TEST_F(ControllerWindowTest, AFailingTickIsOneLineAndTheTimerGoesOn) {
    Run(ShellRig::Section("Timers", "EVILDB_INTERVAL", "0"));
    m_Rig->Services.OnVersions = [] { throw RuntimeError(5, "planted"); };
    Controller().tmUpdate.Tick();
    EXPECT_EQ(m_Rig->System.TakeLog(), Lines{"   Update timer error planted"});
    EXPECT_TRUE(Controller().tmUpdate.Enabled());
    EXPECT_EQ(Controller().Controller().ActivityCount(), 0);
}

TEST_F(ControllerWindowTest, SubmissionsRunByTheirPeriodAndAtOnceWhenAsked) {
    Run(ShellRig::Section("Timers", "SUBDB_INTERVAL", "1"));  // and 2500 ms of this run's own
    EXPECT_FALSE(Controller().tmSub.Enabled());
    m_Rig->System.Files.Folders.insert("/app/Data/InProcess");
    m_Rig->System.Files.Contents["/app/Data/InProcess/a"] = "x";
    EXPECT_TRUE(Controller().CheckSubmissionRetry());
    Text runs;
    for (int tick = 1; tick <= 15; ++tick) {
        Controller().tmSub.Tick();
        if (!m_Rig->Services.Take().empty()) runs += std::to_string(tick) + " ";
    }
    EXPECT_EQ(runs, "5 10 15 ");
    Controller().DoSubmission();
    EXPECT_EQ(Controller().tmSub.Interval(), 1);
    m_Rig->System.Files.Contents.erase("/app/Data/InProcess/a");
    Controller().tmSub.Tick();
    EXPECT_EQ(m_Rig->Services.Take(), Lines{"submissions"});
    EXPECT_EQ(Controller().tmSub.Interval(), 1000);
    EXPECT_FALSE(Controller().tmSub.Enabled()) << "nothing is left to send";
    Controller().DoSubmission();
    m_Rig->Services.OnSubmissions = [] { throw RuntimeError(5, "planted"); };
    m_Rig->System.TakeLog();
    Controller().tmSub.Tick();
    EXPECT_EQ(m_Rig->System.TakeLog(), Lines{"   Error Submissions Timer Tick: planted"});
    EXPECT_EQ(Controller().Controller().ActivityCount(), 0);
    EXPECT_FALSE(Controller().tmSub.Enabled()) << "until the next submission";
}

TEST_F(ControllerWindowTest, TrayCommandsActOrSayWhichWindowIsMissing) {
    Run(ShellRig::Section("Main", DebugSwitch(), "1"));
    m_Rig->Program.LastPanel = 3;
    for (const char* key : {"DblClick", "menu2", "trawlweb", "help", "about", "unknown"}) Controller().MenuClick(key);
    EXPECT_EQ(m_Rig->Services.Take(), (Lines{"panel 3", "panel 2"}));
    EXPECT_EQ(m_Rig->System.Shell.Opened, Lines{"http://home.example/"});
    EXPECT_EQ(m_Rig->System.Processes.Started, Lines{"hh.exe /app\\Trawlbeam.chm"});
    EXPECT_EQ(m_Rig->System.TakeLog().size(), 3U);
    Controller().MenuClick("diag");
    EXPECT_FALSE(Controller().Visible());
    EXPECT_EQ(Controller().SysTray()->MenuItem(7)->Caption(), "Show Debu&g Diagnostics");
    m_Rig->Services.HasWindows = true;
    Controller().MenuClick("trawldrop");
    EXPECT_EQ(Controller().SysTray()->MenuItem(9)->Caption(), "Show Trawlbeam &DropZone");
    // A double click waits until the last of several messages is closed.
    const auto opens = [&] {
        Controller().SysTray()->SysTrayDoubleClick.Raise(1);
        return !m_Rig->Services.Take().empty();
    };
    m_Rig->System.Dialogs.Meanwhile = [&] {
        EXPECT_FALSE(opens());
        ShowMessage(m_Rig->Program, "above it", 0);
        EXPECT_FALSE(opens());
    };
    ShowMessage(m_Rig->Program, "below", 0);
    EXPECT_TRUE(opens());
}

TEST_F(ControllerWindowTest, ExitAsksAndNoKeepsTheProgramRunning) {
    Run();
    bool ended = false;
    m_Rig->Windows.LastUnloadedEvent.Connect([&] { ended = true; });
    m_Rig->System.Dialogs.Answer = 7;
    Controller().MenuClick("exit");
    EXPECT_EQ(m_Rig->System.Dialogs.Shown,
              Lines{"52|Exit Trawlbeam|Exiting will disable Trawlbeam protection.\r\n\r\nAre you sure you want to exit "
                    "Trawlbeam?"});
    EXPECT_FALSE(ended);
    EXPECT_FALSE(Controller().Controller().NeedToExit());
    EXPECT_FALSE(Controller().Controller().ConfirmExit());
    EXPECT_EQ(m_Rig->System.TakeLog(), Lines{"   Trawlbeam Shutdown 1.0.0"});
    m_Rig->System.Dialogs.Answer = 6;
    m_Rig->Services.Take();
    Controller().MenuClick("exit");
    EXPECT_TRUE(ended);
    EXPECT_EQ(m_Rig->Services.Take(), (Lines{"close main", "drop", "close drop zone", "close notifications"}));
    EXPECT_EQ(m_Rig->Program.Settings, nullptr);
    EXPECT_NE(m_Rig->System.Files.Contents["/app/Trawlbeam.ini"].find("AutoUpdate"), Text::npos) << "saved";
    EXPECT_TRUE(m_Rig->Windows.Loaded().empty());
}

TEST_F(ControllerWindowTest, ExitWaitsForACycleAndAnOwedShutdownDoesNotReturn) {
    Run(ShellRig::Section("Timers", "EVILDB_INTERVAL", "0"));
    m_Rig->System.Dialogs.Answer = 7;
    m_Rig->Services.OnUpdate = [this] {
        Controller().MenuClick("exit");
        EXPECT_TRUE(m_Rig->System.Dialogs.Shown.empty()) << "the question comes when the cycle ends";
    };
    Controller().tmUpdate.Tick();
    EXPECT_EQ(m_Rig->System.Dialogs.Shown.size(), 1U);
    // Answered with No; the next cycle's end must not end the program in silence.
    m_Rig->Services.OnUpdate = {};
    Controller().tmUpdate.Tick();
    EXPECT_TRUE(Controller().IsLoaded());
    EXPECT_EQ(m_Rig->System.Dialogs.Shown.size(), 1U);
}

TEST_F(ControllerWindowTest, TheFrameClosesNothingAndTheSessionEndAsksNothing) {
    Run(ShellRig::Section("Main", DebugSwitch(), "1"));
    EXPECT_FALSE(Controller().Unload(UnloadMode::User));
    EXPECT_TRUE(Controller().Visible());
    // An activity that does not end holds the exit up for half a second at most.
    Controller().Controller().StartActivity("stuck", false);
    EXPECT_TRUE(Controller().Unload(UnloadMode::Session));
    EXPECT_TRUE(m_Rig->System.Dialogs.Shown.empty());
    EXPECT_EQ(m_Rig->System.Pump.Slept, 500);
    EXPECT_EQ(m_Rig->System.Pump.Pumped, 10);
    EXPECT_EQ(m_Rig->System.TakeLog().front(), " D 25000 frmController QueryUnload, CanExit: False Count: 1");
}

// Whatever serves messages can end the program, and what called goes on in it afterwards.
TEST_F(ControllerWindowTest, AnExitInsideAMessageOrAWaitLeavesWhatIsRunningWhole) {
    const auto end = [this] {
        m_Rig->System.Dialogs.Answer = 6;
        Controller().MenuClick("exit");
        Controller().Unload(UnloadMode::Session);
        EXPECT_EQ(m_Rig->Program.Settings, nullptr);
    };
    const Text often = ShellRig::Section("Timers", "EVILDB_INTERVAL", "0");
    Run(often);
    m_Rig->System.Dialogs.Meanwhile = end;
    Text reply = "old";
    Controller().CheckEvil({"1", "Nope", "x"}, reply);
    EXPECT_EQ(reply, "");
    EXPECT_EQ(m_Rig->System.TakeLog(), (Lines{"   Trawlbeam Shutdown 1.0.0", " D Checking:  ()"}))
        << "it came to its end";
    Controller().CheckEvil({"1", "Check", "http://x/"}, reply);
    EXPECT_EQ(m_Rig->System.TakeLog().back(), "   CheckEvil error: 91 Object variable or With block variable not set");
    // In the wait of an update, inside the message of a request.
    Run(often);
    m_Rig->System.Dialogs.Meanwhile = [this] { Controller().tmUpdate.Tick(); };
    m_Rig->Services.OnUpdate = end;
    Controller().CheckEvil({"1", "Nope", "x"}, reply);
    EXPECT_FALSE(Controller().IsLoaded());
    EXPECT_FALSE(Controller().tmUpdate.Enabled());
    // Settings that cannot be saved: the message comes while they are being saved for the last time.
    Run();
    m_Rig->System.Files.FailAt(1, ErrorNumber::DiskFull, true);
    m_Rig->System.Dialogs.Meanwhile = [&] {
        Controller().Unload(UnloadMode::Session);
        m_Rig->Program.Settings.reset();
    };
    Controller().Unload(UnloadMode::Session);
    EXPECT_EQ(m_Rig->System.Dialogs.Shown.size(), 1U);
    EXPECT_TRUE(m_Rig->Windows.Loaded().empty());
}

}  // namespace
}  // namespace tb
