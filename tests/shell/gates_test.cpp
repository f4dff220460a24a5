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
    rig.Gates.AddComponents();
    // Attributes that cannot be cleared are left.
    files.FailAt(1, ErrorNumber::PermissionDenied);
    AddComponent(rig.Program, "{WinDir}", "x.dll", false);
    Text all;
    for (const Text name : {"Trawlbeam.exe", "tbXML.dll", "tbSender.dll", "x.dll"}) {
        const ComponentRecord& record = rig.Program.Components->Item(name);
        all += record.PATHNAME + "|" + record.VERSION + "|" + (record.CREATEDATE == date ? "dated|" : "|") +
               ToText(record.REQUIRED) + "|" + ToText(record.MISSING) + "\n";
    }
    EXPECT_EQ(all,
              "/app\\|||True|True\n/app\\|1.2.3.0|dated|True|False\n|0.0.0|dated|True|False\n"
              "C:\\windows\\|9.0|dated|False|False\n");
    EXPECT_EQ(files.ReadOnly, (std::set<std::filesystem::path>{"C:\\windows\\/x.dll"}));
    // Without a version the date decides.
    EXPECT_FALSE(IsComponentOutOfDate(rig.Program, "tbSender.dll", "9.9.9", date.PlusSeconds(1)));
    EXPECT_TRUE(IsComponentOutOfDate(rig.Program, "tbSender.dll", "9.9.9", date.PlusSeconds(2)));
}

TEST(CheckExpireOrWarnVersion, TellsWhatTheDefaultsSay) {
    // With the answer to each message, and the beginning of it.
    const std::tuple<Text, Text, bool, std::int32_t, bool, bool, Lines> cases[] = {
        {"1.0.0", "1.0.0", true, 6, false, false, {}},
        {"2.0.0", "", true, 7, false, false, {"68|Trawlbeam|This"}},
        {"2.0.0", "2.0.0", false, 6, false, true, {}},
        {"2.0.0", "2.0.0", true, 6, true, false, {"16|Trawlbeam|Traw"}},
        {"", "soon", true, 6, false, false, {}}};
    for (const auto& [warn, expire, pending, answer, stops, needs, shown] : cases) {
        GatesRig rig;
        rig.SetVersions(warn, expire);
        rig.System.Dialogs.Answer = answer;
        if (pending) rig.MakePending();
        EXPECT_EQ(rig.Gates.CheckExpireOrWarnVersion(), stops) << warn << expire;
        EXPECT_EQ(rig.Program.NeedToUpdate, needs) << warn << expire;
        for (Text& prompt : rig.System.Dialogs.Shown) prompt.resize(17);
        EXPECT_EQ(rig.System.Dialogs.Shown, shown);
        EXPECT_EQ(rig.Log.Take().empty(), warn != "2.0.0" && expire != "soon");
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
    rig.System.Dialogs.Shown.clear();
    rig.System.Files.Contents["/app/Updates/Backup/installing.xml"];
    EXPECT_TRUE(rig.Gates.CheckInstallPendingUpdates());
    EXPECT_EQ(rig.System.Dialogs.Shown, Lines());
    EXPECT_TRUE(rig.Log.Take().front().starts_with("0 An installation of updates was broken off"));
    rig.System.Processes.StartedNumber = 0;
    EXPECT_FALSE(rig.Gates.CheckInstallPendingUpdates());
    const Text failed = "Trawlbeam tbUpdater.exe updater program did not start";
    EXPECT_EQ(rig.Log.Take().back(), "0 " + failed + " (0), " + updater);
    EXPECT_EQ(rig.System.Dialogs.Shown, Lines{"48|Trawlbeam|" + failed + "."});
}

}  // namespace
}  // namespace tb
