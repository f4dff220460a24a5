#include <gtest/gtest.h>

#include <algorithm>

#include "base/numbers.h"
#include "components/tbXML/Document.h"
#include "fakes/Raised.h"
#include "refdata/PendingUpdates.h"
#include "refdata/UpdateCheck.h"
#include "refdata/UpdateRig.h"

namespace tb {
namespace {

TEST(UpdateManifest, TellsPlainNamesFromAllOthers) {
    for (const Text name : {"a b.txt", "x", "console.dll", "com.dll", "COM10", "nul-1", "\xE9t\xE9.dll"}) {
        EXPECT_TRUE(IsPlainFileName(name)) << name;
    }
    for (const Text name :
         {"",     ".",        "..",      "a\\b",    "a/b",         "\\\\h\\s",    "C:a",          "a.dll:s", "a.",
          "a ",   " a",       "a..b",    "a*",      "a?",          "a\tb",        "CON",          "nul.dll", "Aux .txt",
          "com1", "LPT9.x.y", "COM\xB2", "conout$", "updates.xml", "Updates.XML", "UPDATE~1.XML", "x.tmp~"}) {
        EXPECT_FALSE(IsPlainFileName(name)) << Quoted(name);
    }
    EXPECT_FALSE(IsPlainFileName(Text("a\0b", 3)));
    EXPECT_TRUE(IsPlainFileName(Text(128, 'a')));
    EXPECT_FALSE(IsPlainFileName(Text(129, 'a')));
    const auto numberOf = [](const Text& text) {
        Document document;
        document.LoadXML(Manifest("", text));
        return ManifestNumber(*document.Root());
    };
    EXPECT_EQ(numberOf("007"), 7);
    EXPECT_EQ(numberOf("2147483647"), 2147483647);
    for (const Text text : {"", "5 ", "-5", "5.0", "5e1", "../5", "2147483648", "99999999999999999999"}) {
        EXPECT_EQ(Raised([&] { numberOf(text); }), text.size() < 10 ? 13 : 6) << text;
    }
}

TEST(CUpdate, StagesWhatIsNewerAndThenTheManifest) {
    UpdateRig rig;
    rig.Set("KEY", "A-1");
    // The help file has no version and goes by its date; the updater is put into use and not counted.
    const Text children = Child("tbXML.dll", "3") + Child("tbUpdater.exe", "7", "1.10") +
                          Child("Trawlbeam.chm", "4", "", "DOWNLOAD='Y' CreatedDate='1/2/2003'") +
                          Child("new.dll", "4", "") + Child("../current.dll", "x", "9", "DOWNLOAD='N'");
    rig.System.Versions.Versions["/app/tbUpdater.exe"]["FileVersion"] = "1.10";
    EXPECT_EQ(rig.Check(Manifest(children)), 3);
    EXPECT_EQ(rig.Program.Components->Item("tbUpdater.exe").VERSION, "1.10") << "or it would be fetched again";
    const Lines log = rig.Log.Take();
    ASSERT_EQ(log.size(), 17U);
    EXPECT_EQ(Lines(log.begin() + 5, log.begin() + 11),
              (Lines{"1 Current: tbUpdater.exe 1.0.0 11/06/1994 08:49:36 Update: 1.10 11/20/2026 07:08:09",
                     "0    Downloading file: tbUpdater.exe 1.10 7",
                     "0    Received download file: tbUpdater.exe 1.10 7 success",
                     "0    Copying tbUpdater.exe to: /app/tbUpdater.exe", "0    Installation of tbUpdater.exe success",
                     "1 Current: Trawlbeam.chm 0.0.0 11/06/1994 08:49:36 Update:  11/20/2026 07:08:09"}));
    EXPECT_EQ(log[16], "0 Downloaded 3 Trawlbeam update files: tbXML.dll, tbUpdater.exe, Trawlbeam.chm, new.dll");
    EXPECT_EQ(rig.Percents, "17 56 78 100 ");
    EXPECT_EQ(rig.StagedNames(), "Trawlbeam.chm new.dll tbXML.dll updates.xml ");
    EXPECT_EQ(rig.ContentOf("/app/tbUpdater.exe"), "updater");
    const FileTimes& times = rig.System.Files.Dates[Staging / "Trawlbeam.chm"];
    EXPECT_EQ(FormatDateTime(times.Created) + ", " + FormatDateTime(times.Modified),
              "01/02/2003 00:00:00, 11/20/2026 07:08:09");
    EXPECT_EQ(FormatDateTime(times.Accessed), Today);
    EXPECT_EQ(rig.Get("LastUpdateDate") + ", " + rig.Get("LastUpdateVersion"), Today + ", 5");
    EXPECT_NE(rig.ContentOf("/app/Trawlbeam.ini").find(">5<"), Text::npos) << "saved";
    EXPECT_EQ(rig.Net.Requests[0].Headers[0].second, "A-1");
}

// One thing that is different before a check.
void Prepare(UpdateRig& rig, const Text& what) {
    FakeHttp::Answer& answer = rig.Net.Answers["GET http://g/5/new.dll"];
    if (what == "no servers") rig.Program.Settings->ReplaceGlobals("SERVERS", std::make_shared<Element>("SERVERS"));
    if (what == "needed") rig.Program.NeedToUpdate = true;
    if (what == "status") answer.Status = 404;
    if (what == "unlisted") rig.Place("/app/new.dll", "x");
    if (what.rfind("last ", 0) == 0 || what == "needed")
        rig.Set("LastUpdateVersion", what == "needed" ? "5" : what.substr(5));
    if (what.rfind("pending ", 0) != 0) return;
    rig.System.Files.Folders.insert(Staging);
    rig.Place(Staging / "updates.xml", Manifest("", what.substr(8)));
    rig.Place(Staging / "x.dll", "staged before");
    rig.System.Files.ReadOnly.insert(Staging / "x.dll");
}

TEST(CUpdate, EndsAsWhatItFindsTells) {
    const Text staged = "new.dll tbXML.dll updates.xml ";
    const Text downloaded = "Downloaded 2 Trawlbeam update files: tbXML.dll, new.dll";
    const Text nothing = "Completed checking update instructions - no update files to install";
    const Text noManifest = "No update manifest found";
    const Text upToDate = "Trawlbeam is up to date. ";
    const Text mismatch = "DownloadFile: 13 Type mismatch";
    const Text failed = "   Download file new.dll failure: ";
    // What comes of what, with the staged files and the last line of the log.
    const std::tuple<Text, Text, int, Text, Text> cases[] = {
        {"no servers", "", -1, "", noManifest},
        {"", "", -1, "", noManifest},
        {"", Manifest(Child("new.dll", "0")), 1, "new.dll updates.xml ", "Downloaded 1 Trawlbeam update file: new.dll"},
        {"last 5", Manifest(TwoFiles), 0, "", upToDate},
        {"needed", Manifest(TwoFiles), 2, staged, downloaded},
        {"last 4", Manifest(TwoFiles), 2, staged, downloaded},
        {"last no number", Manifest(TwoFiles), 2, staged, downloaded},
        {"pending 05", Manifest(TwoFiles), 0, "updates.xml x.dll ", "Pending updates to install."},
        {"pending 4", Manifest(TwoFiles), 2, staged, downloaded},
        {"pending '", Manifest(TwoFiles), 2, staged, downloaded},
        {"", Manifest(Child("tbUpdater.exe", "7")), 0, "", nothing},
        {"", Manifest(Child("tbXML.dll", "3", "1.0")), 0, "", nothing},
        // Files that fail.
        {"status", Manifest(TwoFiles), -1, "tbXML.dll ", failed + "g: status 404"},
        {"", Manifest(Child("tbUpdater.exe", "1234")), -1, "tbUpdater.exe ",
         "   Download file tbUpdater.exe size incorrect: 1,234, actual size:7"},
        {"", Manifest(TwoFiles + Child("..\\x", "3")), -1, "",
         "   Download file ..\\x5Cx failure: not a plain file name"},
        {"", Manifest(TwoFiles + Child("TBXML.DLL", "3")), -1, "", "   Download file TBXML.DLL failure: named twice"},
        {"", Manifest(TwoFiles + Child("x", "-3")), -1, "", mismatch},
        {"", Manifest(Child("tbXML.dll", "3", "x")), -1, "", mismatch},
        {"unlisted", Manifest(TwoFiles), -1, "tbXML.dll ", "DownloadFile: 5 Invalid procedure call or argument"},
        // Manifests that are none.
        {"", Manifest(TwoFiles, "../5"), 0, "", "Update CheckUpdates 13 Type mismatch"},
        {"", "<html>", 0, "", "Update CheckUpdates -2147213504 XML line 1: <html> is not closed"},
    };
    for (const auto& [before, manifest, result, left, line] : cases) {
        UpdateRig rig;
        Prepare(rig, before);
        EXPECT_EQ(rig.Check(manifest), result) << line;
        EXPECT_EQ(rig.Log.Take().back(), "0 " + line);
        EXPECT_EQ(rig.StagedNames(), left) << line;
        EXPECT_EQ(rig.ContentOf(Staging / "Backup/5/updates.xml") == "none", line != nothing) << line;
        EXPECT_EQ(rig.Get("LastUpdateVersion") == "5", result > 0 || line == nothing || line == upToDate) << line;
        EXPECT_EQ(rig.Get("LastUpdateDate"), Today);
    }
    UpdateRig manual;
    Prepare(manual, "pending 4");
    Prepare(manual, "last 5");
    EXPECT_EQ(manual.Check(Manifest(TwoFiles), true), 0);
    EXPECT_EQ(manual.Log.Take(), (Lines{Checking + "11/20/2026 01:02:03", "0 Received installation instructions 5",
                                        "0 Clearing old pending updates. ", "0 Trawlbeam is up to date. "}));
    EXPECT_EQ(manual.System.Dialogs.Shown, Lines{"64|Trawlbeam|Trawlbeam is up to date."});
    // A wrong size is told, and the file counts: the updater refuses it. The progress goes by the manifest's sizes.
    UpdateRig sizes;
    const Text two = "2000000000";
    EXPECT_EQ(sizes.Check(Manifest(Child("tbXML.dll", two, "1") + Child("new.dll", two))), 1);
    EXPECT_EQ(sizes.Percents, "50 100 ");
    EXPECT_EQ(sizes.Log.Take()[6], "0    Download file new.dll size incorrect: 2,000,000,000, actual size:4");
    // What a server may send for a file.
    for (const auto& [size, limit] : std::vector<std::pair<int, std::uint64_t>>{
             {4, Sender::SmallReplyLimit}, {600'000, 1'200'000}, {2'000'000'000, Sender::DataReplyLimit}}) {
        sizes.Check(Manifest(Child("new.dll", std::to_string(size)), "6"));
        EXPECT_EQ(sizes.Net.Requests.back().BodyLimit, limit);
    }
    UpdateRig locked;
    locked.System.Files.ReadOnly = {"/app/tbUpdater.exe"};
    const auto held = locked.System.Files.OpenForReading("/app/tbUpdater.exe");
    EXPECT_EQ(locked.Check(Manifest(Child("tbUpdater.exe", "7"))), 0);
    EXPECT_EQ(locked.Log.Take()[6], "0    Move tbUpdater.exe failed, tried to move from:/app/Updates/tbUpdater.exe");
    EXPECT_TRUE(locked.System.Files.ReadOnly.empty()) << "or it could not be replaced";
}

TEST(CUpdate, AsksForTheFramedManifestOnlyAfterAnError) {
    const Text good = EncryptStringChk(Manifest(""));
    for (const auto& [reply, result] :
         std::vector<std::pair<Text, int>>{{good, 0}, {good.substr(1), -1}, {Manifest(""), -1}, {"", -1}}) {
        UpdateRig rig;
        rig.Set("TestVersion", "7");
        rig.Net.Answers["POST http://u/Versions/7/updates.bin"] = {200, reply};
        EXPECT_EQ(rig.Updater.DoCheckForUpdates(false), result) << Quoted(reply);
        EXPECT_EQ(rig.Net.Take(),
                  (Lines{"POST http://u/Versions/7/updates.xml", "POST http://u/Versions/7/updates.bin"}));
        EXPECT_EQ(Lines(rig.Log.Lines.begin() + 1, rig.Log.Lines.begin() + 3),
                  (Lines{"0 Test Version: 7, /Versions/7/updates.xml", "0 Error retrieving manifest: u: refused"}));
    }
}

// Whatever call fails, once or from then on: the updater is the old or the new one, and what is pending is whole.
TEST(CUpdate, LeavesTheProgramWholeWhateverStepFails) {
    const Text manifest = Manifest(TwoFiles + Child("tbUpdater.exe", "7"));
    for (const bool forGood : {false, true}) {
        bool failed = true;
        for (int step = 1; failed; ++step) {
            ASSERT_LT(step, 500);
            UpdateRig rig;
            Prepare(rig, "pending 4");
            rig.System.Files.FailAt(step, ErrorNumber::DiskFull, forGood);
            const int before = rig.System.Files.Calls();
            const std::int16_t result = rig.Check(manifest);
            failed = rig.System.Files.Calls() - before >= step;
            rig.System.Files.FailNoMore();
            const Text updater = rig.ContentOf("/app/tbUpdater.exe");
            EXPECT_TRUE(updater == "old tbUpdater.exe" || updater == "updater") << step;
            EXPECT_EQ(rig.ContentOf("/app/tbXML.dll"), "old tbXML.dll");
            const Text pending = rig.ContentOf(Staging / "updates.xml");
            if (pending == Manifest("", "4")) {
                EXPECT_EQ(rig.ContentOf(Staging / "x.dll"), "staged before") << step;
            } else if (pending != "none") {
                EXPECT_EQ(rig.ContentOf(Staging / "tbXML.dll") + rig.ContentOf(Staging / "new.dll"), "newmore") << step;
            }
            EXPECT_TRUE(result <= 0 || HasPendingUpdates(rig.Program)) << step;
            EXPECT_EQ(rig.System.Files.OpenCount(), 0U);
            // The next check finds a sound disk.
            rig.Program.NeedToUpdate = true;
            rig.Check(manifest);
            EXPECT_NE(rig.ContentOf(Staging / "updates.xml").find("'5'"), Text::npos) << step;
            EXPECT_EQ(rig.ContentOf(Staging / "tbXML.dll") + rig.ContentOf(Staging / "new.dll"), "newmore") << step;
        }
    }
}

// The stop or the exit comes inside the exchange of the manifest or of a file.
TEST(CUpdate, AStopOrAnExitGivesTheDateBack) {
    for (const size_t call : {1U, 2U, 3U, 4U, 5U, 6U}) {
        UpdateRig rig;
        const bool exit = call > 3;
        rig.Net.Meanwhile = [&] {
            if (rig.Net.Requests.size() != (exit ? call - 3 : call)) return;
            rig.Exit = exit;
            rig.Updater.StopUpdate(!exit);
        };
        // A stop inside the last exchange comes too late.
        const int result = call == 3 ? 2 : 0;
        EXPECT_EQ(rig.Check(Manifest(TwoFiles)), result);
        EXPECT_EQ(HasPendingUpdates(rig.Program), result > 0);
        EXPECT_EQ(rig.Log.Take().back() == "0 Cancelling Update", result == 0);
        EXPECT_EQ(rig.Get("LastUpdateDate"), result == 0 ? "11/20/2026 01:02:03" : Today);
        EXPECT_EQ(rig.Percents.ends_with("0 ") && !rig.Percents.ends_with("100 "), result == 0);
    }
}

TEST(UpdateCheck, RunsOnceADayUnlessSomethingIsMissing) {
    const auto noNew = [](const Text& date) {
        return "Last checked for updates on " + date + ".  No new updates are available...";
    };
    const std::tuple<Text, Text, bool, Text> cases[] = {
        {"", "", true, ""},
        {"", "11/20/2026 08:09:10", true, ""},
        {"", "11-20-2026 08:09:11", false, noNew("11/20/2026 08:09:11")},
        {"needed", "11/20/2026 08:09:11", true, ""},
        {"", "11/22/2026 08:09:11", false, noNew("11/22/2026 08:09:11")},
        {"", "never", false, ""},
        {"offline", "", false, "Not Online"},
        {"pending 5", "", false, "Pending updates are available for installation"}};
    for (const auto& [before, date, can, message] : cases) {
        for (const bool manual : {false, true}) {
            UpdateRig rig;
            Prepare(rig, before);
            rig.Set("LastUpdateDate", date);
            rig.Net.IsThereNetwork = before != "offline";
            Text told = "before";
            EXPECT_EQ(UpdateCheck(rig.Real).CanUpdate(manual, told), can) << date;
            EXPECT_EQ(told, manual ? message : "") << date;
            EXPECT_EQ(rig.System.Dialogs.Shown.size(), manual && before == "offline" ? 1U : 0U);
            EXPECT_EQ(rig.Log.Take(), date == "never" ? Lines{"0 CanUpdate Error: 13 Type mismatch"} : Lines());
        }
    }
}

TEST(UpdateCheck, FetchesTheDataFilesThenTheUpdate) {
    UpdateRig rig;
    rig.Program.NeedToUpdate = true;
    UpdateCheck check(rig.Real);
    Text told;
    rig.Net.Meanwhile = [&] {
        rig.Program.NeedToUpdate = false;
        EXPECT_FALSE(check.CanUpdate(false, told));
        EXPECT_EQ(told, "Update already in process");
    };
    rig.Net.Answers["POST http://u/updates.xml"] = {200, Manifest("")};
    EXPECT_EQ(check.CheckForUpdates(rig.Updater, false), 0);
    EXPECT_EQ(rig.Log.Take().front(), "0 Checking for updates - NeedToUpdate...");
    EXPECT_TRUE(rig.Program.NeedToUpdate);
    const Lines asked = rig.Net.Take();
    EXPECT_EQ(asked.front(), "HEAD http://r/reference.bin");
    EXPECT_TRUE(asked.at(1).ends_with("/defaults.bin"));
    EXPECT_EQ(asked.back(), "POST http://u/updates.xml");
    EXPECT_TRUE(check.CanUpdate(false, told)) << "the check is over";
    // The session ends while a file is under way: the program's values go.
    rig.Net.Meanwhile = [&] { rig.Program.Settings.reset(); };
    EXPECT_EQ(check.CheckForUpdates(rig.Updater, false), 0);
    EXPECT_EQ(rig.Log.Take().back(), "0 Update CheckUpdates 91 Object variable or With block variable not set");
}

}  // namespace
}  // namespace tb
