#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/ShellRig.h"

namespace tb {
namespace {

using testing::Contains;
using testing::Not;

constexpr const char* Pending = "/app/Updates/updates.xml";

TEST(Start, AFirstStartLosesTheLinesBeforeItsFoldersAndRunsOn) {
    ShellRig rig;
    rig.System.Files.Folders = {"/app"};
    rig.System.Files.Contents.clear();
    ASSERT_TRUE(rig.Chain->Main());
    EXPECT_EQ(rig.System.TakeLog().front().substr(0, 32), "   Missing required components, ");
    EXPECT_EQ(rig.System.Files.Folders, (std::set<std::filesystem::path>{"/app", "/app/Data", "/app/Data/InProcess",
                                                                         "/app/Data/InProcess/Error", "/app/Log"}));
    EXPECT_TRUE(rig.Program.NeedToUpdate);
    EXPECT_EQ(rig.Windows.Take().back(), "close splash");
    EXPECT_EQ(rig.Program.HomeURL, "http://home.example/");
    EXPECT_EQ(rig.Program.LastPanel, 1);
    EXPECT_EQ(rig.Controller().Controller().ActivityCount(), 0);
    // The defaults are written into memory, not into the file.
    EXPECT_EQ(rig.Program.Settings->GetXMLString("MAIN", "AUTOTRIMSUBDAYS", ""), "Never");
    EXPECT_EQ(rig.System.Files.Contents["/app/Trawlbeam.ini"], "<INI DATE='11/21/2026 08:09:10'>\r\n</INI>\r\n");
}

TEST(Start, AWholeInstallationTellsOfACodePageAtMostAndHasItsWindows) {
    ShellRig rig(ShellRig::Section("Main", "Splash", "1"));
    rig.System.Machine.CodePageNumber = 65001;
    ASSERT_TRUE(rig.Chain->Main());
    EXPECT_EQ(rig.System.TakeLog(),
              (Lines{"   " + Text(80, '-'), "   Starting 1.0.0",
                     "   Code page 65001 has more than one byte a character: texts are in 1252"}));
    EXPECT_EQ(rig.Windows.Take(), (Lines{"splash", "helper", "drop zone", "close splash"}));
    EXPECT_EQ(rig.System.Processes.Trims.size(), 1U);
}

// What stops the start, each gate in its turn, and whether the user has been told in a message.
const struct {
    Text Line;
    bool Tells;
    void (*Plant)(ShellRig& rig);
} Stops[] = {{"Pending updates to install, exiting", true,
              [](ShellRig& rig) {
                  rig.System.Files.Contents[Pending];
                  rig.System.Dialogs.Answer = AnswerYes;
              }},
             {"CheckNameAndPrevInstance TRUE, exiting", true,
              [](ShellRig& rig) {
                  rig.System.WindowText.TopLevel = {{"Trawlbeam Updater", "ThunderFormDC"}};
              }},
             {"CheckForMissingComponents TRUE, exiting", true,
              [](ShellRig& rig) {
                  rig.System.Files.Contents[Pending];
                  rig.System.Files.Contents.erase("/app/tbXML.dll");
              }},
             {"CheckExpireOrWarnVersion TRUE, exiting", true,
              [](ShellRig& rig) {
                  rig.System.Files.Contents[Pending];
                  rig.System.Files.Contents[ShellRig::DefaultsFile] =
                      ShellRig::Defaults(ShellRig::Group("MAIN", "<E NAME='EXPIREVER'>2.0</E>"));
              }},
             {"CheckLoadReferenceData TRUE, exiting", true,
              [](ShellRig& rig) { rig.System.Files.Contents[ShellRig::ReferenceFile] = EncryptStringChk("<B/>"); }},
             {"Controller StartActivity FALSE, exiting", false,
              [](ShellRig& rig) { rig.OnMade = [](frmController& made) { made.Controller().NeedToExit(true); }; }}};

// The settings are gone before the last line, which is therefore always written.
TEST(Start, EveryGateCanStopTheStart) {
    const Text debug = ShellRig::Section("Main", DebugSwitch(), "1");
    for (const auto& [line, tells, plant] : Stops) {
        ShellRig rig(debug);
        plant(rig);
        EXPECT_FALSE(rig.Chain->Main()) << line;
        EXPECT_FALSE(rig.Chain->HasFailed());
        const Lines log = rig.System.TakeLog();
        EXPECT_EQ(log.at(2), " D 25000 Trawlbeam.ini initialized");
        EXPECT_EQ(Lines(log.end() - 3, log.end() - 1), (Lines{" D 25000 " + line, " D 25000 Trawlbeam AllDone"}));
        EXPECT_TRUE(log.back().starts_with(" D Controller EndActivity ")) << log.back();
        EXPECT_EQ(rig.System.Dialogs.Shown.empty(), !tells) << line;
        EXPECT_TRUE(rig.Windows.Done.empty());
        if (!tells) continue;
        // A gate that asks the user serves messages: the session may end in it.
        ShellRig ended;
        plant(ended);
        ended.System.Dialogs.Meanwhile = [&] { ended.Controller().Unload(UnloadMode::Session); };
        EXPECT_FALSE(ended.Chain->Main()) << line;
        EXPECT_EQ(ended.System.Dialogs.Shown.size(), 1U) << line;
        EXPECT_EQ(ended.Windows.Take().back(), "close notifications") << line;
        EXPECT_EQ(ended.System.TakeLog().back(), " D Controller EndActivity (Count = 0): Trawlbeam Setup");
    }
    ShellRig early;
    early.System.Files.Contents[ShellRig::DefaultsFile] = "0G";
    EXPECT_FALSE(early.Chain->Main());
    EXPECT_EQ(early.System.TakeLog().back(), "   CheckLoadDefaults TRUE, exiting");
}

TEST(Start, MessagesAreTheProgramsOwnFromTheSkinToTheExit) {
    ShellRig rig;
    rig.Windows.HasMessages = true;
    rig.System.Files.Contents["/app/Updates/updates.xml"] = "<U/>";
    const auto show = [&] { return ShowMessage(rig.Program, "a", 4, {}, "b.chm", 7); };
    show();
    EXPECT_EQ(rig.System.Dialogs.Shown, Lines{"4|Trawlbeam|a"}) << "there is no skin yet";
    rig.System.Dialogs.Answer = AnswerNo;
    ASSERT_TRUE(rig.Chain->Main());
    EXPECT_EQ(rig.System.Dialogs.Shown.size(), 2U) << "the question about updates stays a plain one";
    rig.Windows.Take();
    EXPECT_EQ(show(), AnswerYes);
    EXPECT_EQ(rig.Windows.Take(), Lines{"message 4|Trawlbeam|a|b.chm7"});
    // A window that nobody closes does not keep the process.
    Form left(rig.Family, "frmLeft");
    left.Load();
    EXPECT_TRUE(rig.Controller().Unload(UnloadMode::Session));
    EXPECT_FALSE(left.IsLoaded());
    show();
    EXPECT_EQ(rig.System.Dialogs.Shown.size(), 3U) << "no window any more";
}

// A wait for the network serves messages, and so does the shell that is told of the icon.
TEST(Start, TheSessionMayEndInsideItsWaits) {
    ShellRig waiting;
    waiting.System.Files.Contents.erase(ShellRig::ReferenceFile);
    waiting.OnRequest = [&](const Text&) { waiting.Controller().Unload(UnloadMode::Session); };
    EXPECT_FALSE(waiting.Chain->Main());
    EXPECT_EQ(waiting.Asked(), Lines{"HEAD reference.bin"});
    ShellRig late;
    late.Tray.Meanwhile = [&] { late.Controller().Unload(UnloadMode::Session); };
    EXPECT_TRUE(late.Chain->Main());
    EXPECT_TRUE(late.Family.Loaded().empty());
    EXPECT_EQ(late.Tray.Listener, nullptr);
}

TEST(Start, AnUnexpectedErrorIsShownAndEndsTheStart) {
    for (const bool early : {true, false}) {
        ShellRig rig(ShellRig::Section("Main", "BackColor", early ? "0" : "x"));
        if (early) rig.System.Resources.Strings[101] = "x";
        bool counted = early;
        rig.System.Dialogs.Meanwhile = [&] { counted = rig.Program.ModalDialogOpen(); };
        EXPECT_FALSE(rig.Chain->Main());
        EXPECT_TRUE(rig.Chain->HasFailed());
        EXPECT_EQ(counted, !early) << "a plain box before there is a skin";
        EXPECT_EQ(rig.System.Dialogs.Shown, Lines{"16|Trawlbeam|Trawlbeam error: 13 Type mismatch"});
        const Lines log = rig.System.TakeLog();
        EXPECT_THAT(log, Contains("   Trawlbeam error: 13 Type mismatch"));
        EXPECT_THAT(log, Not(Contains(" D Trawlbeam AllDone")));
    }
    // An error of the last stage is none.
    ShellRig late;
    late.Windows.OnCall = [](const Text& what) {
        if (what == "drop zone") throw RuntimeError(5, "planted");
    };
    EXPECT_TRUE(late.Chain->Main());
    EXPECT_EQ(late.System.TakeLog().back(), "   StartTrawlbeam Error: planted");
    EXPECT_EQ(late.Controller().Controller().ActivityCount(), 0);
}

TEST(Start, TheSkinMayBeScrambledAndMustBeADocument) {
    ShellRig scrambled;
    const Text hidden = ScrambleString("<SKIN><Graphics/></SKIN>", 0);
    scrambled.System.Resources.Strings[256] = hidden.substr(0, 5);
    scrambled.System.Resources.Strings[257] = hidden.substr(5);
    EXPECT_TRUE(scrambled.Chain->Main());
    EXPECT_EQ(scrambled.Program.SkinRoot->Name(), "SKIN");
    EXPECT_EQ(scrambled.Program.HomeURL, "http://home.trawlbeam.example/") << "the skin names none";
    for (const Text range : {"", "256", "300-301"}) {
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
    EXPECT_EQ(rig.System.TakeLog().size(), 7U);
    EXPECT_EQ(rig.System.WindowText.Sent, Lines{"11: TBWAKEUP"});

    ShellRig stubborn;
    stubborn.System.Processes.PreviousInstances = 1000;
    stubborn.System.WindowText.HasChannel = false;
    EXPECT_FALSE(stubborn.Chain->Main());
    EXPECT_EQ(stubborn.System.Pump.Slept, 50000);
}

}  // namespace
}  // namespace tb
