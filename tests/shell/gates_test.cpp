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
            std::make_shared<xmlINI>(xmlINI::Surroundings{System.Files, System.Clock, System.Dialogs, {}, "Trawlbeam"});
        Program.Components = std::make_shared<ComponentList>();
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
    for (const Text name : {"Trawlbeam.exe", "tbXML.dll", "tbSender.dll", "x.dll", "held.dll"}) {
        const ComponentRecord& record = rig.Entered(name);
        all += record.FILENAME + "|" + record.PATHNAME + "|" + record.VERSION + "|" +
               (record.CREATEDATE ? FormatDate(*record.CREATEDATE) : "") + "|" + ToText(record.REQUIRED) + "|" +
               ToText(record.MISSING) + "\n";
    }
    EXPECT_EQ(all,
              "Trawlbeam.exe|/app\\|||True|True\n"
              "tbXML.dll|/app\\|1.2.3.0|01/02/2026|True|False\n"
              "tbSender.dll||0.0.0|01/02/2026|True|False\n"
              "x.dll|C:\\windows\\|9.0|01/02/2026|False|False\n"
              "held.dll||0.0.0|01/01/1970|True|False\n");
    EXPECT_EQ(rig.Entered("tbxml.dll").MODIFIEDDATE, date.PlusSeconds(1));
    EXPECT_TRUE(files.ReadOnly.empty());

    files.Contents["/app/tbUpdater.exe"];
    RefreshComponent(rig.Program, "TBUPDATER.EXE");
    EXPECT_EQ(rig.Entered("tbUpdater.exe").VERSION, "0.0.0");
    EXPECT_FALSE(rig.Entered("tbUpdater.exe").MISSING);
}

TEST(IsComponentOutOfDate, GoesByTheVersionElseByTheDate) {
    GatesRig rig;
    const Date date(CivilDate{2026, 1, 2, 3, 4, 5});
    EXPECT_TRUE(IsComponentOutOfDate(rig.Program, "a.dll", "1.0.0", date)) << "it is not there";
    for (const Text& name : {Text("a.dll"), Text("b.chm"), Text("c.bin")})
        rig.System.Files.Contents["/app/" + name] = "x";
    rig.Program.Components->Add({"A.dll", "", "1.0.0", date, date, true, false});
    rig.Program.Components->Add({"b.chm", "", "0.0.0", date, date, true, false});
    rig.Program.Components->Add({"c.bin", "", "", {}, {}, true, false});
    EXPECT_FALSE(IsComponentOutOfDate(rig.Program, "a.dll", "1.0.0", date.PlusSeconds(9)));
    EXPECT_TRUE(IsComponentOutOfDate(rig.Program, "a.dll", "1.0.1", date));
    EXPECT_FALSE(IsComponentOutOfDate(rig.Program, "b.chm", "9.9.9", date));
    EXPECT_TRUE(IsComponentOutOfDate(rig.Program, "b.chm", "9.9.9", date.PlusSeconds(1)));
    EXPECT_TRUE(IsComponentOutOfDate(rig.Program, "c.bin", "0.0.1", date)) << "a record without a date is the oldest";
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
    const struct {
        Text Warn, Expire;
        bool Pending;
        std::int32_t Answer;
        bool Stops, Needs;
        // The beginning of each message.
        Lines Shown = {};
    } cases[] = {{"", "", false, 6, false, false},
                 {"1.0.0", "1.0.0", true, 6, false, false},
                 {"2.0.0", "", false, 6, false, true, {"68|Trawlbeam|This"}},
                 {"2.0.0", "", true, 7, false, false, {"68|Trawlbeam|This"}},
                 {"2.0.0", "2.0.0", false, 6, false, true},
                 {"2.0.0", "2.0.0", true, 6, true, false, {"16|Trawlbeam|Traw"}},
                 {"", "soon", true, 6, false, false}};
    for (const auto& [warn, expire, pending, answer, stops, needs, shown] : cases) {
        GatesRig rig;
        rig.SetVersions(warn, expire);
        rig.System.Dialogs.Answer = answer;
        if (pending) rig.MakePending();
        EXPECT_EQ(rig.Gates.CheckExpireOrWarnVersion(), stops) << warn << expire;
        EXPECT_EQ(rig.Program.NeedToUpdate, needs) << warn << expire;
        for (Text& prompt : rig.System.Dialogs.Shown) prompt.resize(17);
        EXPECT_EQ(rig.System.Dialogs.Shown, shown);
    }
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
    EXPECT_EQ(rig.Log.Take().size(), 3U);
    EXPECT_EQ(rig.System.Dialogs.Shown.size(), 3U);
    EXPECT_EQ(rig.System.Dialogs.Shown[0],
              "64|Trawlbeam|'Trawlbeam.exe' has been renamed to: 'x.exe'.\r\n\r\n"
              "Please rename back to: 'x.exe'. \r\n\r\nx is now exiting... ");
}

TEST(CheckInstallPendingUpdates, StartsTheUpdaterOnYes) {
    GatesRig rig;
    EXPECT_FALSE(rig.Gates.CheckInstallPendingUpdates());
    EXPECT_EQ(rig.System.Dialogs.Shown, Lines());
    rig.MakePending();
    rig.System.Dialogs.Answer = 7;
    EXPECT_FALSE(rig.Gates.CheckInstallPendingUpdates());
    EXPECT_EQ(rig.System.Processes.Started, Lines());
    rig.System.Dialogs.Answer = 6;
    EXPECT_TRUE(rig.Gates.CheckInstallPendingUpdates());
    const Text updater = "/app\\tbUpdater.exe";
    EXPECT_EQ(rig.System.Processes.Started, Lines{"/app/tbUpdater.exe: " + updater + " Trawlbeam.exe Trawlbeam"});
    EXPECT_EQ(rig.Log.Take().back(), "0 " + updater + " started (77)");
    // One that was broken off goes on without a question.
    const size_t asked = rig.System.Dialogs.Shown.size();
    rig.System.Files.Contents["/app/Updates/Backup/installing.xml"];
    EXPECT_TRUE(rig.Gates.CheckInstallPendingUpdates());
    EXPECT_EQ(rig.System.Dialogs.Shown.size(), asked);
    EXPECT_EQ(rig.System.Processes.Started.size(), 2U);
    rig.System.Files.Contents.erase("/app/Updates/Backup/installing.xml");
    rig.System.Processes.StartedNumber = 0;
    EXPECT_FALSE(rig.Gates.CheckInstallPendingUpdates());
    const Text failed = "Trawlbeam tbUpdater.exe updater program did not start";
    EXPECT_EQ(rig.Log.Take().back(), "0 " + failed + " (0), " + updater);
    EXPECT_EQ(rig.System.Dialogs.Shown.back(), "48|Trawlbeam|" + failed + ".");
}

}  // namespace
}  // namespace tb
