#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/RecordedLog.h"
#include "shell/ShellRig.h"
#include "shell/helpers/Messages.h"

namespace tb {
namespace {

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
    controller.NeedToExit(false);
    controller.EndActivity("B", false);
    EXPECT_EQ(log.Take(),
              (Lines{"1 Controller NeedToExit = False", "1 Controller EndActivity UNDERRUN: B", "Shutdown"}));
}

class ControllerWindowTest : public ::testing::Test {
protected:
    void Run(
        const Text& settings = {}, const std::function<void(FakeSystem&)>& prepare = [](FakeSystem&) {}) {
        m_Rig = std::make_unique<ShellRig>(settings);
        prepare(m_Rig->System);
        ASSERT_TRUE(m_Rig->Chain->Main());
        m_Rig->System.TakeLog();
        m_Rig->Windows.Take();
        m_Rig->Asked();
    }
    frmController& Controller() { return m_Rig->Controller(); }
    void Set(const Text& section, const Text& key, const Text& value) {
        m_Rig->Program.Settings->WriteXMLString(section, key, value);
    }
    // Ticks of a timer, in which the numbers of those that did something are told.
    Text RunsIn(int ticks, Timer& timer, const std::function<bool()>& didRun) {
        Text runs;
        for (int tick = 1; tick <= ticks; ++tick) {
            timer.Tick();
            if (didRun()) runs += std::to_string(tick) + " ";
        }
        return runs;
    }
    // In debug mode.
    bool DidSubmit() {
        const Lines log = m_Rig->System.TakeLog();
        return std::count(log.begin(), log.end(),
                          " D 25000 Controller StartActivity (Count = 1): Processing Submissions") > 0;
    }

    const Text m_Often = ShellRig::Section("Timers", "EVILDB_INTERVAL", "0");
    const Text m_Debug = ShellRig::Section("Main", DebugSwitch(), "1");
    std::unique_ptr<ShellRig> m_Rig;
};

TEST_F(ControllerWindowTest, TheTrayComesLastWithItsMenu) {
    const auto keys = [this] {
        Text found;
        for (std::int32_t index = 0; const auto* item = Controller().SysTray()->MenuItem(index); ++index)
            found += item->Key() + " ";
        return found;
    };
    Run({}, [this](FakeSystem& system) {
        system.Machine.System = {4, 0, 1381, 2};
        m_Rig->Windows.OnCall = [](const Text& what) { EXPECT_NE(what, "drop zone"); };
    });
    EXPECT_EQ(keys(), "dblclick  menu1 menu2 menu3 trawlweb  help about  exit ") << "no drop zone";
    Run(m_Debug + ShellRig::Section("Desktop", "Show", "0"), [](FakeSystem& system) {
        system.Machine.System = {5, 0, 2195, 2};
    });
    EXPECT_EQ(keys(), "dblclick  menu1 menu2 menu3 trawlweb  diag  trawldrop  help about  exit ");
    EXPECT_EQ(Controller().SysTray()->MenuItem(9)->Caption(), "Show Trawlbeam &DropZone");
    EXPECT_EQ(Controller().Caption(), "Trawlbeam Controller Debug");
    EXPECT_TRUE(Controller().Visible());
}

TEST_F(ControllerWindowTest, ARequestIsJudgedWithTheProgramsSettings) {
    const Text wave("RIFF\x24\0\0\0WAVEfmt \x10\0\0\0\x01\0\x01\0\x40\x1f\0\0\x40\x1f\0\0\x01\0\x08\0data\0\0\0\0", 44);
    Run(ShellRig::Section("Main", "AlertSound", "1"),
        [&](FakeSystem& system) { system.Resources.Customs["ALERT"] = wave; });
    Controller().Data().m_EvilDB->AddToDB("http://evil.example", "2", "d");
    // As a client asks: through the tray's text box.
    const auto ask = [this](const Text& request) {
        Controller().SysTray()->txtBHOMessage.SetText("7\t" + request);
        return m_Rig->System.WindowText.Sent.back();
    };
    EXPECT_EQ(ask("Check\thttp://evil.example/"), "7: Validated: d  (Category: Spoof)");
    EXPECT_EQ(m_Rig->Device.Played.size(), 1U);
    for (const bool inWindow : {true, false}) {
        m_Rig->Windows.HasWindows = inWindow;
        EXPECT_EQ(ask("Allow\thttp://evil.example"), "7: ");
        EXPECT_EQ(m_Rig->Windows.Take().size(), inWindow ? 1U : 0U);
    }
    EXPECT_EQ(ask("Check\thttp://evil.example/"), "7: OK");
    EXPECT_NE(m_Rig->System.Files.Contents["/app/Data/SiteOverrides.xml"].find("evil.example"), Text::npos);
}

TEST_F(ControllerWindowTest, TheDeploymentDecidesWhetherTheListIsGuarded) {
    Deployment product = TestDeployment();
    product.BuildStamp = "202611010000";
    for (const bool guarded : {false, true}) {
        product.ListGuard = guarded;
        ShellRig rig({}, product);
        rig.Web.Replies["MalDB.aspx"] = EncryptStringChk("999912312359\n1\n");
        ASSERT_TRUE(rig.Chain->Main());
        EXPECT_EQ(rig.Controller().Data().m_EvilDB->LastTimestamp(), guarded ? "200001010000" : "999912312359");
        EXPECT_EQ(rig.System.TakeLog().size(), guarded ? 3U : 4U);
    }
}

TEST_F(ControllerWindowTest, EachKindOfWorkComesEveryPeriodAndOneTick) {
    const auto cycles = [this](int ticks) {
        return RunsIn(ticks, Controller().tmUpdate, [this] { return !m_Rig->Asked().empty(); });
    };
    Run(m_Often);
    EXPECT_EQ(cycles(5), "1 2 3 4 5 ");
    Run();
    EXPECT_EQ(cycles(130), "61 122 ");
    Run(ShellRig::Section("Timers", "EVILDB_ENABLED", "0"));
    const auto trims = [this] { return !std::exchange(m_Rig->System.Processes.Trims, {}).empty(); };
    trims();
    EXPECT_EQ(RunsIn(1900, Controller().tmUpdate, trims), "1801 ");
    Set("Timers", "FREEMEM_ENABLED", "0");
    EXPECT_EQ(RunsIn(1900, Controller().tmUpdate, trims), "");
}

TEST_F(ControllerWindowTest, ACycleUpdatesReportsAndLooksForTheProgram) {
    const Lines list{"POST MalDB.aspx me"};
    const Lines both{"POST MalDB.aspx me", "POST Versions.aspx me"};
    Run(m_Often + ShellRig::Section("Main", "KEY", "me"));
    const auto cycle = [this] {
        Controller().tmUpdate.Tick();
        return m_Rig->Asked();
    };
    Set("Main", "AutoUpdate", "0");
    m_Rig->Web.Errors["Versions.aspx"] = "busy";
    EXPECT_EQ(cycle(), both);
    m_Rig->Web.Errors.clear();
    EXPECT_EQ(cycle(), both) << "nobody took the first report";
    m_Rig->System.Clock.Pass(Date::SecondsPerDay);
    EXPECT_EQ(cycle(), list) << "a day is not yet over";
    m_Rig->System.Clock.Pass(1);
    EXPECT_EQ(cycle(), both);
    Set("Main", "AutoUpdate", "1");
    // No cycle begins inside one that waits.
    m_Rig->OnRequest = [this](const Text&) {
        EXPECT_FALSE(Controller().tmUpdate.Enabled());
        Controller().tmUpdate.Tick();
    };
    EXPECT_EQ(cycle(), (Lines{list[0], "HEAD reference.bin me", "HEAD defaults.bin me", "POST updates.xml me"}));
    EXPECT_TRUE(Controller().tmUpdate.Enabled());
    EXPECT_EQ(cycle(), list) << "the next check comes the next day";
    // Afterwards the timer follows the list's switch alone.
    m_Rig->OnRequest = [this](const Text&) { Set("TIMERS", "EVILDB_ENABLED", "0"); };
    cycle();
    EXPECT_FALSE(Controller().tmUpdate.Enabled());
    EXPECT_EQ(cycle(), Lines()) << "switched off: due, and nothing done";
}

TEST_F(ControllerWindowTest, AFailingTickIsOneLineAndItsActivityEnds) {
    Run(m_Often);
    for (int count = 0; count < INT16_MAX; ++count) Controller().Controller().StartActivity("many", false);
    Controller().tmUpdate.Tick();
    EXPECT_EQ(m_Rig->System.TakeLog(), Lines{"   Update timer error Overflow"});
    EXPECT_TRUE(Controller().tmUpdate.Enabled());
    EXPECT_EQ(Controller().Controller().ActivityCount(), INT16_MAX - 1);
    Controller().Controller().StartActivity("again", false);
    Controller().DoSubmission();
    Controller().tmSub.Tick();
    EXPECT_EQ(m_Rig->System.TakeLog(), Lines{"   Error Submissions Timer Tick: Overflow"});
    EXPECT_EQ(Controller().Controller().ActivityCount(), INT16_MAX - 1);
}

TEST_F(ControllerWindowTest, SubmissionsRunByTheirPeriodAndAtOnceWhenAsked) {
    const auto runs = [this] { return RunsIn(15, Controller().tmSub, [this] { return DidSubmit(); }); };
    // Of this run's own, added to one second: 2000 ms.
    Run(m_Debug + ShellRig::Section("Timers", "SUBDB_INTERVAL", "3"), [](FakeSystem& system) {
        system.Random.Coming = {0.25, 0.2};
    });
    EXPECT_FALSE(Controller().tmSub.Enabled());
    m_Rig->System.Files.Contents["/app/Data/InProcess/a"] = "x";
    EXPECT_TRUE(Controller().CheckSubmissionRetry());
    EXPECT_TRUE(Controller().tmSub.Enabled());
    EXPECT_EQ(runs(), "6 12 ");
    Controller().DoSubmission();
    EXPECT_EQ(Controller().tmSub.Interval(), 1);
    m_Rig->System.Files.Contents.erase("/app/Data/InProcess/a");
    Controller().tmSub.Tick();
    EXPECT_TRUE(DidSubmit());
    EXPECT_EQ(Controller().tmSub.Interval(), 1000);
    EXPECT_FALSE(Controller().tmSub.Enabled()) << "nothing is left to send";
    m_Rig->System.Files.FailAt(1);
    EXPECT_FALSE(Controller().CheckSubmissionRetry());
    EXPECT_EQ(m_Rig->System.TakeLog(), Lines{"   25000 Error CheckSubmissionRetry: 61 Disk full"});
}

TEST_F(ControllerWindowTest, TrayCommandsActOrSayWhichWindowIsMissing) {
    Run(m_Debug);
    m_Rig->Program.LastPanel = 3;
    for (const char* key : {"DblClick", "menu2", "trawlweb", "help", "about", "unknown"}) Controller().MenuClick(key);
    EXPECT_EQ(m_Rig->Windows.Take(), (Lines{"panel 3", "panel 2"}));
    EXPECT_EQ(m_Rig->System.Shell.Opened, Lines{"http://home.example/"});
    EXPECT_EQ(m_Rig->System.Processes.Started, Lines{"hh.exe /app\\Trawlbeam.chm"});
    EXPECT_EQ(m_Rig->System.TakeLog().size(), 3U);
    EXPECT_GT(Split(Controller().txtDiags.GetText(), '\n').size(), 3U);
    const auto caption = [this] { return Controller().SysTray()->MenuItem(7)->Caption(); };
    Controller().MenuClick("diag");
    EXPECT_FALSE(Controller().Visible());
    EXPECT_EQ(caption(), "Show Debu&g Diagnostics");
    // Minimising the diagnostics hides them; otherwise the view fills the window.
    Controller().MenuClick("diag");
    EXPECT_EQ(caption(), "Hide Debu&g Diagnostics");
    Controller().Move(0, 0, 3000, 2000);
    EXPECT_EQ(Controller().txtDiags.Width(), Controller().ScaleWidth());
    Controller().SetWindowState(1);
    EXPECT_FALSE(Controller().Visible());
    EXPECT_EQ(Controller().WindowState(), 0);
    EXPECT_EQ(caption(), "Show Debu&g Diagnostics");
    m_Rig->Windows.HasWindows = true;
    Controller().MenuClick("trawldrop");
    EXPECT_EQ(Controller().SysTray()->MenuItem(9)->Caption(), "Show Trawlbeam &DropZone");
    // A double click waits until the last of several messages is closed.
    const auto opens = [&] {
        Controller().SysTray()->SysTrayDoubleClick.Raise(1);
        return !m_Rig->Windows.Take().empty();
    };
    m_Rig->System.Dialogs.Meanwhile = [&] {
        ShowMessage(m_Rig->Program, "above it", 0);
        EXPECT_FALSE(opens());
    };
    ShowMessage(m_Rig->Program, "below", 0);
    EXPECT_TRUE(opens());
}

TEST_F(ControllerWindowTest, ExitAsksAndNoKeepsTheProgramRunning) {
    Run();
    bool ended = false;
    m_Rig->Family.LastUnloadedEvent.Connect([&] { ended = true; });
    m_Rig->System.Dialogs.Answer = 7;
    Controller().MenuClick("exit");
    EXPECT_EQ(m_Rig->System.Dialogs.Shown,
              Lines{"52|Exit Trawlbeam|Exiting will disable Trawlbeam protection.\r\n\r\nAre you sure you want to exit "
                    "Trawlbeam?"});
    EXPECT_FALSE(Controller().Controller().NeedToExit());
    EXPECT_FALSE(Controller().Controller().ConfirmExit());
    EXPECT_EQ(m_Rig->System.TakeLog(), Lines{"   Trawlbeam Shutdown 1.0.0"});
    m_Rig->System.Dialogs.Answer = 6;
    const Databases& data = Controller().Data();
    m_Rig->Windows.OnCall = [&](const Text& what) {
        const bool closing = what == "close main";
        EXPECT_EQ(data.m_EvilDB && data.m_OverDB && data.oSubmissionDB, closing);
        EXPECT_EQ(data.m_EvilDB || data.m_OverDB || data.oSubmissionDB, closing);
        EXPECT_EQ(m_Rig->Program.Settings != nullptr, what != "close notifications") << what;
    };
    Controller().MenuClick("exit");
    EXPECT_TRUE(ended);
    EXPECT_EQ(m_Rig->Windows.Take(), (Lines{"close main", "close drop zone", "close about", "close notifications"}));
    EXPECT_NE(m_Rig->System.Files.Contents["/app/Trawlbeam.ini"].find("AutoUpdate"), Text::npos) << "saved";
}

TEST_F(ControllerWindowTest, ExitWaitsForACycleAndAnOwedShutdownDoesNotReturn) {
    Run(m_Often);
    m_Rig->System.Dialogs.Answer = 7;
    m_Rig->OnRequest = [this](const Text& request) {
        if (request == "POST MalDB.aspx") Controller().MenuClick("exit");
        EXPECT_TRUE(m_Rig->System.Dialogs.Shown.empty()) << "the question comes when the cycle ends";
    };
    Controller().tmUpdate.Tick();
    // Answered with No; the next cycle's end must not end the program in silence.
    m_Rig->OnRequest = {};
    Controller().tmUpdate.Tick();
    EXPECT_TRUE(Controller().IsLoaded());
    EXPECT_EQ(m_Rig->System.Dialogs.Shown.size(), 1U);
}

TEST_F(ControllerWindowTest, TheFrameClosesNothingAndTheSessionEndAsksNothing) {
    Run(m_Debug);
    EXPECT_FALSE(Controller().Unload(UnloadMode::User));
    EXPECT_TRUE(Controller().Visible());
    // An activity that does not end holds the exit up for half a second at most.
    Controller().Controller().StartActivity("stuck", false);
    EXPECT_TRUE(Controller().Unload(UnloadMode::Session));
    EXPECT_TRUE(m_Rig->System.Dialogs.Shown.empty());
    EXPECT_EQ(m_Rig->System.Pump.Slept, 500);
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
    Run(m_Often);
    m_Rig->System.Dialogs.Meanwhile = end;
    Text reply = "old";
    Controller().CheckEvil({"1", "Nope", "x"}, reply);
    EXPECT_EQ(reply, "");
    EXPECT_EQ(m_Rig->System.TakeLog(), (Lines{"   Trawlbeam Shutdown 1.0.0", " D Checking:  ()"}))
        << "it came to its end";
    // In the wait of an update, inside the message of a request.
    Run(m_Often);
    m_Rig->System.Dialogs.Meanwhile = [this] { Controller().tmUpdate.Tick(); };
    m_Rig->OnRequest = [&](const Text&) { end(); };
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
    EXPECT_TRUE(m_Rig->Family.Loaded().empty());
}

}  // namespace
}  // namespace tb
