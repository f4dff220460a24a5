#include "updater/Updater.h"

#include <gtest/gtest.h>

#include "fakes/FakePlatform.h"
#include "fakes/RecordedLog.h"
#include "updater/UpdaterLog.h"

namespace tb {
namespace {

const Text PermissionDenied = "70 Permission denied";

// Files that somebody else changes meanwhile.
class ChangingFiles : public FakeFiles {
public:
    // After one has been replaced.
    std::function<void(const Path&)> Replaced;

    void Replace(const Path& from, const Path& to) override {
        FakeFiles::Replace(from, to);
        if (Replaced) Replaced(to);
    }
};

// An installed version with an update to number 57, which the updater itself is part of.
class Update : public testing::Test {
protected:
    using World = std::map<Text, Text>;
    static const inline World Old{
        {"a.dll", "old a"}, {"tbXML.dll", "old xml"}, {"Same.chm", "help"}, {"Trawlbeam.exe", "old program"}};
    static const inline World New{{"a.dll", Text(70000, 'a')},
                                  {"tbXML.dll", "new xml"},
                                  {"Same.chm", "help"},
                                  {"Trawlbeam.exe", "new program"},
                                  {"z.dll", "brought"}};

    Update() { Lay(Old); }

    void Lay(const World& installed) {
        m_Files = std::make_unique<ChangingFiles>();
        m_Files->Folders = {"/app", "/app/Updates", "/app/Log"};
        for (const auto& [name, content] : installed) m_Files->Contents["/app/" + name] = content;
        m_Files->Contents["/app/tbUpdater.exe"] = "updater";
        m_Files->ReadOnly.insert("/app/a.dll");
        Stage("57", {"Trawlbeam.exe", "a.dll", "tbXML.dll", "z.dll"});
    }
    // A manifest of the new version, with these of its files staged.
    void Stage(const Text& number, const std::vector<Text>& staged, const World& files = New, const Text& more = {}) {
        Text manifest = "<UPDATES VERSION='" + number + "'>" + more +
                        "<F FILE='TBUPDATER.exe' SIZE='1' DOWNLOAD='Y'/><F FILE='..' DOWNLOAD='N'/>";
        for (const auto& [name, content] : files) {
            manifest += "<F FILE='" + name + "' SIZE='" + std::to_string(content.size()) + "' DOWNLOAD='y'/>";
        }
        m_Files->Contents["/app/Updates/updates.xml"] = manifest + "</UPDATES>";
        for (const Text& name : staged) m_Files->Contents["/app/Updates/" + name] = files.at(name);
        for (const Text& name : staged) m_Files->Dates["/app/Updates/" + name] = {Date(1), Date(2), Date(3)};
    }
    UpdateResult Run() {
        return UpdateInstaller(*m_Files, m_Log, m_Pump, "/app", "Trawlbeam.exe",
                               [this](int percent) { m_Percent = percent; })
            .Run();
    }
    // What lies in a folder.
    World In(const Text& folder) const {
        World world;
        for (const auto& [path, content] : m_Files->Contents) {
            if (path.parent_path() == folder) world[path.filename().string()] = content;
        }
        return world;
    }
    World Installed() const {
        World world = In("/app");
        EXPECT_EQ(world["tbUpdater.exe"], "updater");
        world.erase("tbUpdater.exe");
        return world;
    }
    bool IsPending() const { return m_Files->Exists("/app/Updates/updates.xml"); }
    // Nothing of the update has happened, and the next run may try it again.
    void ExpectAsBefore() {
        EXPECT_EQ(Installed(), Old);
        EXPECT_TRUE(IsPending() && !HasJournal());
    }
    bool HasJournal() const { return m_Files->Exists("/app/Updates/Backup/installing.xml"); }

    std::unique_ptr<ChangingFiles> m_Files;
    RecordedLog m_Log;
    FakePump m_Pump;
    int m_Percent = 0;
};

TEST_F(Update, IsInstalledWithBackupDatesAndNothingLeft) {
    m_Files->Zone = 2;
    m_Files->Contents["/app/Updates/tbUpdater.exe"] = "could not be put in place";
    m_Files->Folders.insert({"/app/Updates/Backup", "/app/Updates/Backup/56"});
    m_Files->Contents["/app/Updates/Backup/56/a.dll"] = "older a";
    m_Files->Contents["/app/Updates/Backup/56/updates.xml"] = "an earlier one";
    // Current by its date, whatever its size: the check has not fetched it.
    m_Files->Contents["/app/Same.chm"] = "longer help";
    EXPECT_EQ(Run().Outcome, UpdateOutcome::Installed);
    EXPECT_EQ(In("/app/Updates/Backup/56"), (World{{"updates.xml", "an earlier one"}}));
    EXPECT_EQ(In("/app/Updates"), World());
    World backup = In("/app/Updates/Backup/57");
    EXPECT_EQ(backup["updates.xml"].substr(0, 22), "<UPDATES VERSION='57'>");
    EXPECT_EQ(backup.size(), 4U);
    EXPECT_EQ(backup["a.dll"], "old a");
    EXPECT_EQ(m_Files->Dates["/app/a.dll"].Modified, Date(2));
    EXPECT_EQ(m_Percent, 100);
    EXPECT_EQ(m_Log.Take(), (std::vector<Text>{"0 Installing update 57, files: 4", "0 Installed a.dll 70000",
                                               "0 Installed z.dll 7", "0 Installed tbXML.dll 7",
                                               "0 Installed Trawlbeam.exe 11", "0 Update 57 is installed"}));
    EXPECT_EQ(Run().Outcome, UpdateOutcome::Nothing);
}

// Whatever fails once, the run ends with a whole version, and the next one with the new.
TEST_F(Update, AnyCallThatFailsLeavesAWholeVersion) {
    for (const bool isLoaded : {false, true}) {
        int undone = 0;
        int failing = 1;
        for (bool isOver = false; !isOver; ++failing) {
            SCOPED_TRACE(failing);
            Lay(Old);
            // A library that a browser has loaded is moved aside, and back.
            if (isLoaded) m_Files->Loaded = {"/app/a.dll"};
            m_Files->FailAt(failing);
            const UpdateOutcome outcome = Run().Outcome;
            isOver = m_Files->Calls() < failing;
            m_Files->FailNoMore();
            if (outcome == UpdateOutcome::Failed) {
                ++undone;
                ExpectAsBefore();
                World left = In("/app/Updates/Backup/57");
                left.erase("a.dll.used1~");
                ASSERT_EQ(left, World());
                ASSERT_EQ(Run().Outcome, UpdateOutcome::Installed);
            } else {
                ASSERT_EQ(outcome, UpdateOutcome::Installed);
                const bool wasPending = IsPending();
                ASSERT_EQ(Run().Outcome, wasPending ? UpdateOutcome::Installed : UpdateOutcome::Nothing);
            }
            ASSERT_EQ(Installed(), New);
            ASSERT_FALSE(IsPending() || HasJournal());
        }
        EXPECT_GT(undone, 20);
        EXPECT_EQ(In("/app/Updates/Backup/57").count("a.dll.used1~"), isLoaded ? 1U : 0U);
        const auto log = m_Log.Take();
        EXPECT_EQ(std::count(log.begin(), log.end(), "0 a.dll is in use and was moved aside") > 0, isLoaded);
    }
}

// The program is the last to be replaced and the first to be put back, next to it the library that it starts with.
TEST_F(Update, ThatIsNotWhatWasStagedIsPutBackInTheOppositeOrder) {
    std::vector<Text> replaced;
    m_Files->Replaced = [&](const std::filesystem::path& to) {
        if (to.parent_path() != "/app") return;
        replaced.push_back(to.filename().string());
        if (to == "/app/a.dll" && replaced.size() == 1) m_Files->Contents[to] = "cut";
    };
    const UpdateResult result = Run();
    EXPECT_EQ(result.Outcome, UpdateOutcome::Failed);
    EXPECT_EQ(result.Reason, "a.dll: 57 Device I/O error");
    EXPECT_FALSE(result.IsDenied);
    ExpectAsBefore();
    EXPECT_EQ(replaced, (std::vector<Text>{"a.dll", "z.dll", "tbXML.dll", "Trawlbeam.exe", "Trawlbeam.exe", "tbXML.dll",
                                           "a.dll"}));
}

class KilledUpdate : public Update {
protected:
    // Of the second kill, which comes at every call of the next run, but not of each: together they are all.
    static constexpr int Stride = 23;

    // Fails a run from its call of that number on, from 1, as a kill does, or only there. False behind its end.
    bool KillAt(int call, bool forGood = true) {
        const int before = m_Files->Calls();
        m_Files->FailAt(call, ErrorNumber::DeviceIO, forGood);
        Run();
        const bool wasKilled = m_Files->Calls() - before >= call;
        m_Files->FailNoMore();
        return wasKilled;
    }
    // Update 56 was broken off behind a.dll, which 57 relies on therefore.
    void LayBroken(const Text& state) {
        Lay(Old);
        m_Files->Folders.insert({"/app/Updates/Backup", "/app/Updates/Backup/56"});
        m_Files->Contents["/app/Updates/Backup/56/a.dll"] = "old a";
        m_Files->Contents["/app/Updates/Backup/installing.xml"] =
            "<JOURNAL STATE='" + state + "'><F FILE='a.dll' VERSION='56' EXISTED='Y' SIZE='5'/></JOURNAL>";
        m_Files->Contents["/app/a.dll"] = New.at("a.dll");
        m_Files->Contents.erase("/app/Updates/a.dll");
    }
    // Kills the next run too, at calls from `first` on in steps, and lets one more end, of which `check` is told.
    template <typename Check>
    void KillAgain(int first, int step, bool forGood, Check check) {
        const ChangingFiles asFound = *m_Files;
        bool wasKilled = true;
        for (int again = first; wasKilled && !HasFailure(); again += step) {
            SCOPED_TRACE(again);
            *m_Files = asFound;
            wasKilled = KillAt(again, forGood);
            EXPECT_TRUE(HasJournal() || Installed() == Old || Installed() == New) << "without a journal all is whole";
            check(Run().Outcome);
            EXPECT_FALSE(IsPending() || HasJournal());
        }
    }
    // The same for a whole update that was killed at each of its calls; `check` may prepare what is found.
    template <typename Found, typename Check>
    void KillTwice(Found found, Check check) {
        for (int call = 1; !HasFailure(); ++call) {
            SCOPED_TRACE(call);
            Lay(Old);
            if (!KillAt(call)) return;
            found();
            KillAgain(1 + call % Stride, Stride, true, check);
        }
    }
};

// The program and the library that it starts with are both old or both new, but for one moment between two renames.
TEST_F(KilledUpdate, AtAnyCallIsFinishedByTheNextRunEvenIfThatIsKilledToo) {
    int torn = 0;
    const auto found = [&] {
        const World world = Installed();
        torn += (world.at("Trawlbeam.exe") == "old program") != (world.at("tbXML.dll") == "old xml") ? 1 : 0;
        EXPECT_TRUE(IsPending() || world == New);
    };
    KillTwice(found, [&](UpdateOutcome outcome) {
        EXPECT_TRUE(outcome == UpdateOutcome::Installed || outcome == UpdateOutcome::Nothing);
        EXPECT_EQ(Installed(), New);
    });
    EXPECT_LE(torn, 3) << "the rename of the program and what comes before it";
    EXPECT_GT(torn, 0);
}

TEST_F(KilledUpdate, IsUndoneWhenItsStagedFilesAreNotWholeAnyMore) {
    bool isCommitted = false;
    const auto found = [&] {
        isCommitted = Installed() == New && In("/app/Updates").size() < 5;
        // Browsers load what they find, and stay.
        m_Files->Loaded = {"/app/a.dll"};
        if (IsPending()) m_Files->Contents["/app/Updates/tbXML.dll"] = "neither of both";
    };
    KillTwice(found, [&](UpdateOutcome outcome) {
        EXPECT_TRUE(outcome == UpdateOutcome::Refused || outcome == UpdateOutcome::Nothing);
        EXPECT_TRUE(Installed() == Old || (isCommitted && Installed() == New));
    });
}

// The old version was coming back under an update that relies on a file of the new one.
TEST_F(KilledUpdate, ThatFailsOnceMoreLeavesAWholeVersion) {
    LayBroken("UNDOING");
    const ChangingFiles asFound = *m_Files;
    for (const bool forGood : {false, true}) {
        *m_Files = asFound;
        KillAgain(1, 1, forGood, [this](UpdateOutcome) { EXPECT_TRUE(Installed() == Old || Installed() == New); });
    }
    EXPECT_EQ(Installed(), Old);
}

TEST_F(KilledUpdate, IsRemovedWhenAFileIsLost) {
    // The undo of an earlier run takes the file for which the new update relies on the program's folder.
    LayBroken("INSTALLING");
    auto held = m_Files->OpenForReading("/app/Trawlbeam.exe");
    EXPECT_EQ(Run().Outcome, UpdateOutcome::Refused);
    EXPECT_EQ(Installed(), Old);
    EXPECT_FALSE(IsPending() || HasJournal());
    held.reset();
    // The staged file has gone, and what is installed is not the new one.
    LayBroken("INSTALLING");
    m_Files->Contents["/app/a.dll"] = "old a";
    EXPECT_EQ(Run().Reason, "a.dll, installed and not downloaded: 5 bytes, 70000 bytes expected");
    // So has the manifest. What was not replaced yet may be in use, and is not touched.
    LayBroken("INSTALLING");
    m_Files->Contents["/app/a.dll"] = "old a";
    m_Files->Contents.erase("/app/Updates/updates.xml");
    held = m_Files->OpenForReading("/app/a.dll");
    m_Pump.Slept = 0;
    EXPECT_EQ(Run().Outcome, UpdateOutcome::Nothing);
    EXPECT_EQ(m_Pump.Slept, 0);
    EXPECT_FALSE(HasJournal());
}

// The program ran on what a kill has left, and its check has replaced the pending update.
TEST_F(KilledUpdate, MeetsAnotherUpdate) {
    for (const bool namesItsFile : {true, false}) {
        LayBroken("INSTALLING");
        World later = New;
        if (!namesItsFile) later.erase("a.dll");
        later["tbXML.dll"] = "still newer xml";
        Stage("58", {"tbXML.dll", "Trawlbeam.exe", "z.dll"}, later);
        EXPECT_EQ(Run().Outcome, UpdateOutcome::Installed);
        // A file that the new manifest does not name goes back to the old version.
        if (!namesItsFile) later["a.dll"] = "old a";
        EXPECT_EQ(Installed(), later);
        EXPECT_FALSE(IsPending() || HasJournal());
    }
}

TEST_F(Update, OfOneFileThatIsInUseIsPutBackAndStaysPending) {
    for (const Text held : {"a.dll", "tbXML.dll"}) {
        Lay(Old);
        std::unique_ptr<FileReader> reader;
        // The other one could be moved aside, but would be missing for a moment at which the program may start.
        if (held == "a.dll") reader = m_Files->OpenForReading("/app/a.dll");
        if (held != "a.dll") m_Files->Loaded = {"/app/tbXML.dll"};
        const UpdateResult result = Run();
        EXPECT_EQ(result.Outcome, UpdateOutcome::Failed);
        EXPECT_EQ(result.Reason, held + ": " + PermissionDenied);
        EXPECT_TRUE(result.IsDenied);
        ExpectAsBefore();
        EXPECT_EQ(m_Pump.Slept, 1500);
        m_Pump.Slept = 0;
    }
    // One that is held for a while is waited for.
    Lay(Old);
    auto scanner = m_Files->OpenForReading("/app/Trawlbeam.exe");
    m_Pump.OnPump = [&] { scanner.reset(); };
    EXPECT_EQ(Run().Outcome, UpdateOutcome::Installed);
    EXPECT_EQ(m_Pump.Slept, 50);
}

TEST_F(Update, WithADefectIsRefusedAsAWholeAndRemoved) {
    const auto manifest = [this](const Text& text) { m_Files->Contents["/app/Updates/updates.xml"] = text; };
    const auto stageWith = [this](const Text& more) { Stage("57", {}, New, more); };
    const std::vector<std::pair<Text, std::function<void()>>> defects{
        {"the manifest: XML line 1: <UPDATES> is not closed", [&] { manifest("<UPDATES VERSION='57'>"); }},
        {"the manifest: Type mismatch", [&] { stageWith("<F FILE='x' SIZE='-1' DOWNLOAD='Y'/>"); }},
        {"the manifest: ..\\x5Cx.exe is not a plain file name",
         [&] { stageWith("<F FILE='..\\x.exe' SIZE='1' DOWNLOAD='Y'/>"); }},
        {"the manifest: a.dll is named twice", [&] { stageWith("<F FILE='A.DLL' SIZE='1' DOWNLOAD='Y'/>"); }},
        {"Log is a folder", [&] { stageWith("<F FILE='Log' SIZE='1' DOWNLOAD='Y'/>"); }},
        {"a.dll, downloaded: 5 bytes, 70000 bytes expected",
         [&] { m_Files->Contents["/app/Updates/a.dll"] = "short"; }},
        {"z.dll is neither downloaded nor installed", [&] { m_Files->Contents.erase("/app/Updates/z.dll"); }}};
    for (const auto& [reason, make] : defects) {
        Lay(Old);
        make();
        World before = Installed();
        const UpdateResult result = Run();
        EXPECT_EQ(result.Outcome, UpdateOutcome::Refused) << reason;
        EXPECT_EQ(result.Reason, reason);
        EXPECT_EQ(m_Log.Take().back(), "0 The update is refused: " + reason);
        EXPECT_EQ(Installed(), before) << reason;
        EXPECT_EQ(In("/app/Updates"), World()) << reason;
    }
}

TEST_F(KilledUpdate, WithADamagedJournalIsInstalledAnew) {
    for (const char* damaged :
         {"", "<JOURNAL STATE='?'/>",
          "<JOURNAL STATE='UNDOING'><F FILE='a.dll' VERSION='57' EXISTED='Y' SIZE='18446744073709551616'/></JOURNAL>",
          "<JOURNAL STATE='UNDOING'><F FILE='a.dll' VERSION='..' EXISTED='Y' SIZE='5'/></JOURNAL>",
          "<JOURNAL STATE='UNDOING'><F FILE='..\\x' VERSION='57' EXISTED='N' SIZE='0'/></JOURNAL>"}) {
        Lay(Old);
        m_Files->Folders.insert("/app/Updates/Backup");
        m_Files->Contents["/app/Updates/Backup/installing.xml"] = damaged;
        EXPECT_EQ(Run().Outcome, UpdateOutcome::Installed);
        EXPECT_EQ(Installed(), New);
        EXPECT_EQ(In("/app/Updates/Backup"), (World{{"installing.xml.bad", damaged}}));
    }
}

TEST(UpdaterCommand, IsTheLastTwoWordsOfAnUnquotedLine) {
    const auto read = [](const Text& line) {
        const auto command = ReadUpdaterCommand(line, {"own.exe", "own"});
        return command ? command->Program + "|" + command->Product : Text("none");
    };
    EXPECT_EQ(read("C:\\My programs\\Trawlbeam 2\\tbUpdater.exe Trawlbeam.exe Trawlbeam "), "Trawlbeam.exe|Trawlbeam");
    EXPECT_EQ(read("\"C:\\a b\\tbUpdater.exe\"  x.EXE  y"), "x.EXE|y");
    for (const char* byHand : {"C:\\a b\\TBUPDATER.EXE", "\"C:\\a b\\tbUpdater.exe\" ", "tbUpdater.exe"})
        EXPECT_EQ(read(byHand), "own.exe|own");
    for (const char* wrong :
         {"", "one", "x.exe y", "tbUpdater.exe x.exe ..", "tbUpdater.exe ..\\x.exe y", "tbUpdater.exe x.com y",
          "tbUpdater.exe C:x.exe y", "tbUpdater.exe tbupdater.exe y", "tbUpdater.exe \"x.exe\" y"}) {
        EXPECT_EQ(read(wrong), "none") << wrong;
    }
}

struct FakeScreen : UpdaterScreen {
    void Say(const Text& message) override { Calls.push_back("say " + message); }
    void Progress(int percent) override { Percent = percent; }
    void Tell(const Text& message) override { Calls.push_back("tell " + Text(Left(message, message.find('\r')))); }
    void Close() override { Calls.emplace_back("close"); }
    void TellClosed(const Text& message) override { Calls.push_back("box " + Text(Left(message, message.find('\r')))); }
    std::vector<Text> Calls;
    int Percent = 0;
};

class CourseOfTheUpdater : public Update {
protected:
    void Course() {
        m_Screen.Calls.clear();
        m_Processes.Started.clear();
        UpdaterLog log(*m_Files, m_Clock, "/app", "Trawlbeam");
        m_Processes.File = "/app/tbUpdater.exe";
        Updater({*m_Files, m_Processes, m_Pump, m_Screen, log}, {"Trawlbeam.exe", "Trawlbeam"}).Run();
    }
    FakeClock m_Clock;
    FakeProcesses m_Processes;
    FakeScreen m_Screen;
    const std::vector<Text> m_Begun{"say Waiting for Trawlbeam to close...",
                                    "say Installing the update of Trawlbeam..."};
};

TEST_F(CourseOfTheUpdater, WaitsAMinuteForTheProgramInstallsAndStartsIt) {
    m_Processes.RunningBeside = {"Trawlbeam.exe"};
    Course();
    EXPECT_EQ(m_Pump.Slept, 60000);
    ExpectAsBefore();
    EXPECT_TRUE(m_Processes.Started.empty());
    EXPECT_EQ(m_Screen.Calls,
              (std::vector<Text>{m_Begun[0], "tell Trawlbeam is still running, so its update has not been installed.",
                                 "close"}));
    m_Pump.Pumped = 0;
    m_Pump.OnPump = [this] { m_Processes.RunningBeside.clear(); };
    Course();
    EXPECT_EQ(Installed(), New);
    EXPECT_GT(m_Pump.Pumped, 1 + 4) << "messages are served while files are copied";
    EXPECT_EQ(m_Processes.Started, std::vector<Text>{"/app/Trawlbeam.exe: \"/app/Trawlbeam.exe\""});
    EXPECT_EQ(m_Screen.Calls, (std::vector<Text>{m_Begun[0], m_Begun[1], "close"}));
    EXPECT_EQ(m_Screen.Percent, 100);
    const Text log = m_Files->Contents["/app/Log/Trawlbeam202611.log"];
    EXPECT_EQ(log.substr(0, log.find('\n')), "11/21/2026 08:09:10   tbUpdater: Started for Trawlbeam.exe Trawlbeam\r");
}

TEST_F(CourseOfTheUpdater, TellsWhatFailedAndStartsAWholeProgramOnly) {
    const auto told = [this] { return m_Screen.Calls.at(2); };
    m_Files->Contents["/app/Updates/a.dll"] = "short";
    Course();
    EXPECT_EQ(told(), "tell The update of Trawlbeam is damaged and has been removed:");
    EXPECT_EQ(m_Processes.Started.size(), 1U);
    Lay(Old);
    auto reader = m_Files->OpenForReading("/app/Trawlbeam.exe");
    Course();
    EXPECT_EQ(told(), "tell The update of Trawlbeam could not be installed now:");
    EXPECT_EQ(m_Processes.Started.size(), 1U);
    reader.reset();
    Lay(Old);
    m_Processes.StartedNumber = 0;
    Course();
    EXPECT_EQ(m_Screen.Calls,
              (std::vector<Text>{m_Begun[0], m_Begun[1], "close", "box Trawlbeam could not be started."}));
    for (int call = 1; !HasJournal(); ++call) {
        Lay(Old);
        m_Files->FailAt(call, ErrorNumber::DeviceIO, true);
        Course();
    }
    EXPECT_EQ(told(), "tell The update of Trawlbeam could be installed only in part:");
    EXPECT_TRUE(m_Processes.Started.empty());
}

}  // namespace
}  // namespace tb
