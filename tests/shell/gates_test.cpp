#include <gtest/gtest.h>

#include "base/numbers.h"
#include "components/tbXML/Document.h"
#include "fakes/FakePlatform.h"
#include "fakes/RecordedLog.h"
#include "refdata/Components.h"
#include "refdata/PendingUpdates.h"
#include "shell/InstallationGates.h"

namespace tb {
namespace {

using Lines = std::vector<Text>;

constexpr const char* Untold = " cannot continue until pending updates are installed";

struct GatesRig {
    GatesRig() {
        Program.Settings =
            std::make_unique<xmlINI>(xmlINI::Surroundings{System.Files, System.Clock, System.Dialogs, {}, "Trawlbeam"});
        Program.Components = std::make_unique<ComponentList>();
        System.Files.Folders.insert({"/app/Updates", "C:\\windows\\"});
    }
    void MakePending() { System.Files.Contents["/app/Updates/updates.xml"]; }
    void SetVersions(const Text& warn, const Text& expire) {
        Document main;
        main.LoadXML("<MAIN><E NAME='WARNVER'>" + warn + "</E><E NAME='EXPIREVER'>" + expire + "</E></MAIN>");
        Program.Settings->ReplaceGlobals("MAIN", main.Root());
    }
    const ComponentRecord& Entered(const Text& name) { return Program.Components->Item(name); }

    FakeSystem System;
    App Program{System, TestDeployment()};
    RecordedLog Log;
    InstallationGates Gates{Program, Log};
};

TEST(AddComponent, RecordsWhatIsThere) {
    GatesRig rig;
    FakeFiles& files = rig.System.Files;
    const Date date(CivilDate{2026, 1, 2, 3, 4, 5});
    for (const Text name : {"/app/tbXML.dll", "/app/Trawlbeam.chm", "/app/tbSender.dll", "C:\\windows\\/x.dll"}) {
        files.Contents[name];
        files.ReadOnly.insert(name);
        files.Dates[name] = {date, date.PlusSeconds(1), date};
    }
    rig.System.Versions.Versions["/app/tbXML.dll"]["FileVersion"] = "1.2.3.0";
    rig.System.Versions.Versions["C:\\windows\\/x.dll"]["FileVersion"] = "9.0";
    // Attributes that cannot be cleared are left.
    rig.Gates.AddComponents();
    AddComponent(rig.Program, "{WinDir}", "x.dll", false);
    files.FailAt(1, ErrorNumber::PermissionDenied);
    files.Contents["/app/held.dll"];
    AddComponent(rig.Program, {}, "held.dll", true);
    Text all;
    for (const ComponentRecord& record : *rig.Program.Components) {
        all += record.FILENAME + "|" + record.PATHNAME + "|" + record.VERSION + "|" +
               (record.CREATEDATE ? FormatDate(*record.CREATEDATE) : "") + "|" + ToText(record.REQUIRED) + "|" +
               ToText(record.MISSING) + "\n";
    }
    EXPECT_EQ(all,
              "Trawlbeam.exe|/app\\|||True|True\n"
              "Trawlbeam.chm||0.0.0|01/02/2026|True|False\n"
              "tbUpdater.exe|/app\\|||True|True\n"
              "MBListEx.ocx|/app\\|||True|True\n"
              "tbXML.dll|/app\\|1.2.3.0|01/02/2026|True|False\n"
              "tbSender.dll||0.0.0|01/02/2026|True|False\n"
              "tbDTab6.ocx|/app\\|||True|True\n"
              "TrawlbeamHelper.dll|/app\\|||True|True\n"
              "tbBHOCfg.dll|/app\\|||True|True\n"
              "tbBHBridge.dll|/app\\|||True|True\n"
              "x.dll|C:\\windows\\|9.0|01/02/2026|False|False\n"
              "held.dll||0.0.0|01/01/1970|True|False\n");
    EXPECT_EQ(rig.Entered("tbxml.dll").MODIFIEDDATE, date.PlusSeconds(1));
    EXPECT_TRUE(files.ReadOnly.empty());

    files.Contents["/app/tbUpdater.exe"];
    RefreshComponent(rig.Program, "TBUPDATER.EXE");
    EXPECT_EQ(rig.Entered("tbUpdater.exe").VERSION, "0.0.0");
    EXPECT_FALSE(rig.Entered("tbUpdater.exe").MISSING);
}

TEST(CheckForMissingComponents, HealsByAnUpdateUnlessOneWaits) {
    for (const bool pending : {false, true}) {
        GatesRig rig;
        EXPECT_FALSE(rig.Gates.CheckForMissingComponents());
        EXPECT_FALSE(rig.Program.NeedToUpdate);
        AddComponent(rig.Program, {}, "optional.dll", false);
        AddComponent(rig.Program, {}, "a.dll", true);
        AddComponent(rig.Program, {}, "b.dll", true);
        if (pending) rig.MakePending();
        EXPECT_EQ(rig.Gates.CheckForMissingComponents(), pending);
        EXPECT_EQ(rig.Log.Take(), Lines{pending ? "0 Missing required components and updates pending, exiting..."
                                                : "0 Missing required components, set NeedToUpdate: a.dll, b.dll"});
        EXPECT_EQ(rig.System.Dialogs.Shown, pending ? Lines{Text("48|Trawlbeam|Trawlbeam") + Untold} : Lines());
        EXPECT_EQ(rig.Program.NeedToUpdate, !pending);
    }
}

TEST(CheckExpireOrWarnVersion, TellsWhatTheDefaultsSay) {
    const Text question =
        "68|Trawlbeam|This version of Trawlbeam is out of date and should be upgraded.\r\n"
        "Please click on 'Yes' to get the latest version.";
    const Text expired = "0 IsVersionNewerThan - ExpireVer: 2.0.0 1.0.0";
    const Text warned = "0 IsVersionNewerThan - WarnVer: 2.0.0 1.0.0";
    const struct {
        Text Warn;
        Text Expire;
        bool Pending;
        std::int32_t Answer;
        bool Stops;
        bool Needs;
        // Lines of the log, and messages, joined.
        Text Log;
        Text Shown;
    } cases[] = {{"", "", false, 6, false, false, "", ""},
                 {"1.0.0", "1.0.0", true, 6, false, false, "", ""},
                 {"2.0.0", "", false, 6, false, true, warned + "+0 Warn version, set NeedToUpdate", question},
                 {"2.0.0", "", true, 7, false, false, warned, question},
                 {"2.0.0", "2.0.0", false, 6, false, true, expired + "+0 Expired version, set NeedToUpdate", ""},
                 {"2.0.0", "2.0.0", true, 6, true, false,
                  expired + "+0 Expired version and pending updates to install, exiting...",
                  Text("16|Trawlbeam|Trawlbeam") + Untold},
                 {"", "soon", true, 6, false, false, "0 CheckExpireOrWarnVersion Error: 13 Type mismatch", ""}};
    for (const auto& [warn, expire, pending, answer, stops, needs, log, shown] : cases) {
        GatesRig rig;
        rig.SetVersions(warn, expire);
        rig.System.Dialogs.Answer = answer;
        if (pending) rig.MakePending();
        EXPECT_EQ(rig.Gates.CheckExpireOrWarnVersion(), stops) << warn << expire;
        EXPECT_EQ(rig.Program.NeedToUpdate, needs) << warn << expire;
        EXPECT_EQ(Join(rig.Log.Take(), "+"), log);
        EXPECT_EQ(Join(rig.System.Dialogs.Shown, "+"), shown);
    }
    GatesRig withoutDefaults;
    EXPECT_FALSE(withoutDefaults.Gates.CheckExpireOrWarnVersion());
    EXPECT_EQ(withoutDefaults.Log.Take(), Lines());
}

TEST(InstallationGates, StopUnderAnotherNameOrBesideTheUpdater) {
    GatesRig rig;
    rig.System.Processes.File = "/app/TRAWLBEAM.exe";
    EXPECT_FALSE(rig.Gates.CheckName());
    rig.System.Processes.File = "/app/x.exe";
    EXPECT_TRUE(rig.Gates.CheckName());
    for (const auto& [name, found] : std::map<Text, bool>{
             {"ThunderFormDC", true}, {"ThunderRT6FormDC", true}, {"ThunderRT6TextBox", false}, {"", false}}) {
        rig.System.WindowText.TopLevel = {{"Trawlbeam Updater", name}};
        EXPECT_EQ(rig.Gates.CheckUpdaterRunning(), found) << name;
    }
    const Text running = "0 Trawlbeam CheckNameAndPreviousInstance - Updater program is running, Trawlbeam is exiting";
    EXPECT_EQ(rig.Log.Take(),
              (Lines{"0 Trawlbeam 'Trawlbeam.exe' has been renamed to: 'x.exe', exiting", running, running}));
    const Text told =
        "64|Trawlbeam|Trawlbeam 'Updater' program is running.\r\n\r\nTrawlbeam can not start until updates "
        "are complete.\r\n\r\nTrawlbeam is now exiting... ";
    EXPECT_EQ(rig.System.Dialogs.Shown, (Lines{"64|Trawlbeam|'Trawlbeam.exe' has been renamed to: 'x.exe'.\r\n\r\n"
                                               "Please rename back to: 'x.exe'. \r\n\r\nx is now exiting... ",
                                               told, told}));
}

TEST(CheckInstallPendingUpdates, StartsTheUpdaterOnYes) {
    const Text question =
        "36|Trawlbeam|Trawlbeam application updates are available to install.\r\n"
        "This may require a system reboot.\r\n\r\nInstall updates?";
    const Text asking = "0 There are updates waiting to install, asking user to install.";
    const Text launching = "0 Check install pending updates, launching updater (CheckInstallPendingUpdates)";
    const Text updater = "/app\\tbUpdater.exe";
    const Text launch = "0 Launching Trawlbeam updater program (LaunchUpdater): Trawlbeam.exe";
    const Text failed = "Trawlbeam tbUpdater.exe updater program did not start";
    GatesRig rig;
    EXPECT_FALSE(rig.Gates.CheckInstallPendingUpdates());
    EXPECT_EQ(rig.Log.Take(), Lines());
    rig.MakePending();
    rig.System.Dialogs.Answer = 7;
    EXPECT_FALSE(rig.Gates.CheckInstallPendingUpdates());
    EXPECT_EQ(rig.Log.Take(), Lines{asking});
    rig.System.Dialogs.Answer = 6;
    EXPECT_TRUE(rig.Gates.CheckInstallPendingUpdates());
    EXPECT_EQ(rig.Log.Take(), (Lines{asking, launching, launch, "0 " + updater + " started (77)"}));
    EXPECT_EQ(rig.System.Processes.Started, Lines{"/app/tbUpdater.exe: " + updater + " Trawlbeam.exe Trawlbeam"});
    // One that was broken off goes on without a question.
    rig.System.Files.Contents["/app/Updates/Backup/installing.xml"];
    EXPECT_TRUE(rig.Gates.CheckInstallPendingUpdates());
    EXPECT_EQ(rig.Log.Take(), (Lines{"0 An installation of updates was broken off, launching updater "
                                     "(CheckInstallPendingUpdates)",
                                     launch, "0 " + updater + " started (77)"}));
    rig.System.Files.Contents.erase("/app/Updates/Backup/installing.xml");
    rig.System.Processes.StartedNumber = 0;
    EXPECT_FALSE(rig.Gates.CheckInstallPendingUpdates());
    EXPECT_EQ(rig.Log.Take(), (Lines{asking, launching, launch, "0 " + failed + " (0), " + updater}));
    EXPECT_EQ(rig.System.Dialogs.Shown, (Lines{question, question, question, "48|Trawlbeam|" + failed + "."}));
}

}  // namespace
}  // namespace tb
