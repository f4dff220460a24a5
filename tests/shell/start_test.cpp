#include <gtest/gtest.h>

#include "shell/ShellRig.h"
#include "sitedb/codec/Encryption.h"

namespace tb {
namespace {

using Lines = std::vector<Text>;

const Text Hyphens = "   " + Text(80, '-');

TEST(Start, AFirstStartLosesTheLinesBeforeItsFoldersAndRunsOn) {
    ShellRig rig;
    rig.System.Files.Folders = {"/app"};
    ASSERT_TRUE(rig.Chain->Main());
    // Without debug mode there is nothing more to tell; what came before the folders is lost.
    EXPECT_EQ(rig.System.TakeLog(), Lines());
    EXPECT_EQ(rig.System.Files.Folders, (std::set<std::filesystem::path>{"/app", "/app/Data", "/app/Data/InProcess",
                                                                         "/app/Data/InProcess/Error", "/app/Log"}));
    EXPECT_EQ(rig.Gates.Passed, (Lines{"defaults", "pending", "name", "updater", "components", "missing", "version",
                                       "reference", "helper", "drop zone", "close splash"}));
    EXPECT_EQ(rig.Program.HomeURL, "http://home.example/");
    EXPECT_EQ(rig.Controller().Controller().ActivityCount(), 0);
    // The defaults are written into memory, not into the file.
    EXPECT_EQ(rig.Program.Settings->GetXMLString("main", "autoupdate", "x"), "1");
    EXPECT_EQ(rig.Program.Settings->GetXMLString("MAIN", "AUTOTRIMSUBDAYS", ""), "Never");
    EXPECT_EQ(rig.System.Files.Contents["/app/Trawlbeam.ini"], "<INI DATE='11/21/2026 08:09:10'>\r\n</INI>\r\n");
}

// The log of a stop at each gate. The settings are gone before the last line, which is therefore always written.
TEST(Start, EveryGateCanStopTheStart) {
    const Text ended = " D Controller EndActivity (Count = 0): Trawlbeam Setup";
    for (const char* gate : {"pending", "name", "updater", "missing", "version", "reference"}) {
        ShellRig quiet;
        quiet.Gates.Stops = gate;
        EXPECT_FALSE(quiet.Chain->Main());
        EXPECT_EQ(quiet.System.TakeLog(), (Lines{Hyphens, "   Starting 1.0.0", ended})) << gate;
        EXPECT_EQ(quiet.Gates.Passed.back(), gate);
        EXPECT_EQ(quiet.Program.Settings, nullptr);
    }
    ShellRig declined(ShellRig::Section("Main", DebugSwitch(), "1"));
    declined.OnMade = [](frmController& made) { made.Controller().NeedToExit(true); };
    EXPECT_FALSE(declined.Chain->Main());
    const Lines log = declined.System.TakeLog();
    EXPECT_EQ(Lines(log.end() - 4, log.end()),
              (Lines{" D 25000 Controller StartActivity DECLINED: Trawlbeam Setup",
                     " D 25000 Controller StartActivity FALSE, exiting", " D 25000 Trawlbeam AllDone",
                     " D Controller EndActivity UNDERRUN: Trawlbeam Setup"}));
    ShellRig early;
    early.Gates.Stops = "defaults";
    EXPECT_FALSE(early.Chain->Main());
    EXPECT_EQ(early.System.TakeLog().back(), "   CheckLoadDefaults TRUE, exiting");
    EXPECT_EQ(early.Chain->Controller(), nullptr);
}

TEST(Start, TellsOfACodePageThatTextsCannotBeIn) {
    ShellRig rig;
    rig.System.Machine.CodePageNumber = 65001;
    EXPECT_TRUE(rig.Chain->Main());
    EXPECT_EQ(rig.System.TakeLog().at(2), "   Code page 65001 has more than one byte a character: texts are in 1252");
}

// A gate that asks the user or waits for the network serves messages.
TEST(Start, TheSessionMayEndInsideAGate) {
    for (const Text where : {"pending", "updater", "missing", "version", "reference"}) {
        ShellRig rig;
        rig.Gates.OnGate = [&](const Text& gate) {
            if (gate == where) rig.Controller().Unload(UnloadMode::Session);
        };
        EXPECT_FALSE(rig.Chain->Main()) << where;
        EXPECT_EQ(rig.Gates.Passed.back(), where);
        EXPECT_TRUE(rig.System.Dialogs.Shown.empty());
    }
}

TEST(Start, AnUnexpectedErrorIsShownAndEndsTheStart) {
    for (const Text gate : {"defaults", "pending", "reference"}) {
        ShellRig rig;
        rig.Gates.Throws = gate;
        EXPECT_FALSE(rig.Chain->Main());
        EXPECT_EQ(rig.System.Dialogs.Shown, Lines{"16|Trawlbeam|Trawlbeam error: 5 planted"});
        const Lines log = rig.System.TakeLog();
        EXPECT_NE(std::find(log.begin(), log.end(), "   Trawlbeam error: 5 planted"), log.end());
        EXPECT_EQ(std::find(log.begin(), log.end(), " D Trawlbeam AllDone"), log.end());
    }
    // A sound that the program file lacks is such an error; an error of the last stage is not.
    ShellRig soundless;
    soundless.System.Resources.Customs.erase("ALERT");
    EXPECT_FALSE(soundless.Chain->Main());
    EXPECT_EQ(soundless.System.Dialogs.Shown.size(), 1U);
    ShellRig late;
    late.Gates.Throws = "drop zone";
    EXPECT_TRUE(late.Chain->Main());
    EXPECT_EQ(late.System.TakeLog().back(), "   StartTrawlbeam Error: planted");
    EXPECT_EQ(late.Program.LastPanel, 0);
    EXPECT_EQ(late.Controller().Controller().ActivityCount(), 0);
}

TEST(Start, TheSkinMayBeScrambledAndMustBeADocument) {
    const Text skin = "<SKIN><Graphics/></SKIN>";
    ShellRig scrambled;
    const Text hidden = ScrambleString(skin, 0);
    scrambled.System.Resources.Strings[256] = hidden.substr(0, 5);
    scrambled.System.Resources.Strings[257] = hidden.substr(5);
    EXPECT_TRUE(scrambled.Chain->Main());
    EXPECT_EQ(scrambled.Program.SkinRoot->Name(), "SKIN");
    EXPECT_EQ(scrambled.Program.HomeURL, "http://home.trawlbeam.example/") << "the skin names none";
    for (const Text range : {"", "256", "x-y", "300-301"}) {
        ShellRig broken;
        broken.System.Resources.Strings[96] = range;
        EXPECT_FALSE(broken.Chain->Main()) << range;
        EXPECT_EQ(broken.System.TakeLog().back(), "   ReadSkinXML Failure");
    }
}

TEST(Start, ASecondInstanceWaitsWakesTheFirstAndEnds) {
    ShellRig rig;
    rig.System.Processes.PreviousInstances = 3;
    EXPECT_FALSE(rig.Chain->Main());
    EXPECT_EQ(rig.System.Pump.Slept, 10000);
    EXPECT_EQ(rig.System.WindowText.Sent, Lines{"11: TBWAKEUP"});

    ShellRig stubborn;
    stubborn.System.Processes.PreviousInstances = 1000;
    stubborn.System.WindowText.HasChannel = false;
    EXPECT_FALSE(stubborn.Chain->Main());
    EXPECT_EQ(stubborn.System.Pump.Slept, 50000);
}

}  // namespace
}  // namespace tb
