// The list under its guard: what a service says that is wrong, broken or in other hands.
#include <gtest/gtest.h>

#include "sitedb/ListOfSites.h"

namespace tb {
namespace {

// The clock of the rig tells 11/21/2026 08:09:10, the build is of 11/01/2026.
const Text Stamp = "202611210800";
const FakeFiles::Path RecordFile = "Data/ListGuard.bin";

Text Site(int number) { return "http://host" + std::to_string(number) + ".example"; }

// Lines with that mark, from one site up to another.
Text Changes(const Text& mark, int from, int to) {
    Text lines;
    for (int number = from; number < to; ++number) lines += mark + "\t" + Site(number) + "\t2\tv\n";
    return lines;
}

// A program that holds so many sites.
class UpdateGuardTest : public testing::Test, protected ListOfSites {
protected:
    UpdateGuardTest() {
        Guarded = true;
        Renew();
    }
    void Fill(int count) {
        Update(Stamp + "\n1\n" + Changes("+", 0, count));
        ASSERT_EQ(DB->LiveCount(), count);
    }
    // Starts the program again: the lines of its start.
    Lines Restart() {
        Renew();
        Reply().clear();
        DB->Load("A-1");
        return Log.Take();
    }
    // "taken", "held" or "quiet" (held, and nothing said) by what an update did.
    Text Outcome(const Text& plain) {
        const auto files = Storage.Contents;
        const std::int32_t count = DB->LiveCount();
        const Text lines = Join(Update(plain), "\n");
        if (lines.find("EvilAdded") != Text::npos) return "taken";
        EXPECT_EQ(DB->LiveCount(), count);
        for (const auto& [path, content] : files) EXPECT_TRUE(path == RecordFile || Storage.Contents[path] == content);
        return lines.find("0 MalDB.Update: Held back, ") != Text::npos ? "held" : "quiet";
    }
    Text Next(int minute) const { return "2026112108" + std::to_string(10 + minute); }
    Text Emptied() const { return Next(1) + "\n1\n"; }
    Text UpToDate() const { return DB->LastTimestamp() + "\n\n"; }
};

TEST_F(UpdateGuardTest, RefusesStampsMoreThanADayAheadAndThoseThatAreNone) {
    Fill(3);
    // Local time may be twelve hours behind GMT, and the stamp a day ahead of that.
    for (const char* stamp : {"202611222010", "", "20261121080", "2026112108000", "202613450000"}) {
        EXPECT_EQ(Outcome(Text(stamp) + "\n1\n"), "quiet") << stamp;
    }
    Update(UpToDate());
    EXPECT_EQ(Update("999912312359\n1\n"), Lines{"0 MalDB.Update: Refused, the stamp 999912312359 is more than a day "
                                                 "ahead; the clock tells 11/21/2026 08:09:10"});
    // Every cycle brings the same; the log has it once.
    EXPECT_EQ(Update("..\\x\n1\n"), Lines{"1 MalDB.Update: Refused, the stamp ..\\x5Cx is none"});
    EXPECT_EQ(Outcome("202611222009\n1\n"), "taken");
}

TEST_F(UpdateGuardTest, GoesByTheNewestStampWhereTheClockIsLate) {
    Fill(3);
    Time.Present = Date(CivilDate{2026, 11, 2, 0, 0, 0});
    Restart();
    EXPECT_EQ(Outcome("202611220801\n0\n"), "quiet");
    EXPECT_EQ(Outcome("202611220800\n0\n"), "taken");
    // A service that was put back to an older state counts from there.
    EXPECT_EQ(Outcome(Stamp + "\n0\n"), "taken");
    EXPECT_EQ(Outcome("202611220801\n0\n"), "quiet");
}

TEST_F(UpdateGuardTest, RefusesNoDateWhileTheClockIsBeforeTheBuild) {
    Fill(3);
    Time.Present = Date(CivilDate{2026, 10, 31, 11, 59, 59});
    EXPECT_EQ(Restart(), (Lines{"0 MalDB.Guard: The clock tells 10/31/2026 11:59:59, which is before this program was "
                                "built; stamps are not checked",
                                "0 Malicious Database Load TBDB" + Stamp + ".BIN: OK"}));
    EXPECT_EQ(Outcome("999912312359\n1\n"), "taken");
    // With the right time the good snapshot wins again, and no later stamp does by it.
    Time.Present = Date(CivilDate{2026, 11, 21, 8, 0, 0});
    EXPECT_EQ(Restart(), (Lines{"0 MalDB.RestoreDB: Passed over for its stamp - TBDB999912312359.BIN",
                                "0 Malicious Database Load TBDB" + Stamp + ".BIN: OK"}));
    EXPECT_EQ(Outcome("999912312358\n0\n"), "quiet");
}

TEST_F(UpdateGuardTest, PruningNeitherCountsFilesAheadNorDeletesTheOneInUse) {
    Storage.Contents[File("999912312359")];
    Storage.Contents[File("20261121")];
    for (int minute = 1; minute < 7; ++minute) Update(Next(minute) + "\n0\n");
    const auto expected = [](const Text& stamps) {
        return "ListGuard.bin TBDB20261121.BIN " + stamps + " 202611210814 202611210815 202611210816 999912312359";
    };
    EXPECT_EQ(Snapshots(), expected("202611210812 202611210813"));
    // The service went back to an older state: its snapshot is the smallest and the one in use.
    Update("202611210800\n0\n");
    EXPECT_EQ(Snapshots(), expected("202611210800 202611210813"));
    // While nobody knows what is ahead it counts.
    Time.Present = Date();
    Update("202611210759\n0\n");
    EXPECT_EQ(Snapshots(), expected("202611210759"));
}

TEST_F(UpdateGuardTest, HoldsBackWhatWouldLeaveFewerThanHalf) {
    const std::tuple<int, Text, Text> cases[] = {
        {1000, "1\n", "held"},
        {999, "1\n", "taken"},
        {2000, "0\n" + Changes("-", 0, 1001) + Changes("+", 5000, 9000), "held"},
        {2001, "0\n" + Changes("-", 0, 1001), "held"},
        {2000, "1\n" + Changes("+", 1000, 2000), "taken"},
        // A site that is named twice is one, whatever its categories and dates.
        {2000, "0\n" + Changes("-", 0, 2000) + Changes("+", 0, 2000), "taken"},
        {2000, "0\n" + Changes("+", 0, 2000) + Changes("-", 0, 2000), "held"},
        {2000, "0\n" + Changes("-", 0, 900) + Changes("-", 0, 900), "taken"},
        {2000, "1\n" + Changes("+", 0, 999) + Changes("+", 0, 999), "held"},
        {2000, "1\n" + Changes("+", 0, 999) + "+\tHTTP://HOST1999.example//\t2\tv", "taken"},
        // What the list would refuse keeps nothing, and takes nothing away.
        {2000, "1\n" + Changes("+", 0, 999) + "+\t" + Site(999) + "\t2\n+\thost999.example\t2\tv\n", "held"},
        {2000, "1\n" + Changes("+", 0, 999) + "+\t" + Site(999) + "\t2\t" + Text(32767, 'v'), "held"},
        {2000, "0\n" + Changes("-", 0, 1000) + "-\thttp://other.example\t2\tv\n-\t" + Site(1000) + "\n\n", "taken"},
    };
    for (const auto& [held, update, outcome] : cases) {
        Storage.Contents.clear();
        Renew();
        Fill(held);
        EXPECT_EQ(Outcome(Next(1) + "\n" + update), outcome) << held << " " << Quoted(update);
    }
}

TEST_F(UpdateGuardTest, MeasuresByTheMostOfSevenDays) {
    Fill(3000);
    Time.Pass(7 * Date::SecondsPerDay);
    EXPECT_EQ(Outcome(Next(1) + "\n0\n" + Changes("-", 0, 1000)), "taken");
    // 1400 of 2000, but of 3000 some days ago; in small steps, too.
    EXPECT_EQ(Outcome(Next(2) + "\n0\n" + Changes("-", 1000, 1600)), "held");
    Restart();
    EXPECT_EQ(Outcome(Next(2) + "\n0\n" + Changes("-", 1000, 1500)), "taken");
    EXPECT_EQ(Outcome(Next(3) + "\n0\n" + Changes("-", 1500, 1501)), "held");
    Time.Pass(7 * Date::SecondsPerDay);
    Update(UpToDate());
    EXPECT_EQ(Outcome(Next(3) + "\n0\n" + Changes("-", 1500, 1501)), "held");
    Update(UpToDate());
    Time.Pass(Date::SecondsPerDay);
    EXPECT_EQ(Outcome(Next(3) + "\n0\n" + Changes("-", 1500, 1501)), "taken");
    // A list that was lost fills again.
    Storage.Contents.erase(Storage.Contents.upper_bound(RecordFile), Storage.Contents.end());
    Restart();
    EXPECT_EQ(Outcome(Next(4) + "\n1\n" + Changes("+", 0, 700)), "taken");
    EXPECT_EQ(Outcome(Next(5) + "\n1\n" + Changes("+", 700, 5000)), "taken");
    EXPECT_EQ(Outcome(Next(6) + "\n1\n" + Changes("+", 0, 700)), "held");
}

TEST_F(UpdateGuardTest, TakesItWhenTheServiceHasSaidSoForADay) {
    Fill(2000);
    const Text heldBack =
        "0 MalDB.Update: Held back, 0 of 2000 entries would stay. The list stays as it is until the "
        "service has said so for a day, counted from 11/21/2026 08:09:10";
    EXPECT_EQ(Update(Emptied()), Lines{heldBack});
    EXPECT_EQ(Update(Emptied()), Lines{});
    Time.Pass(Date::SecondsPerDay - 1);
    // A run of the program says it once more; what was said before counts.
    Restart();
    EXPECT_EQ(Update(Emptied()), Lines{heldBack});
    // An answer that is none, and one that is refused, say nothing.
    Reply() = "1Gx";
    UpdateAsItIs();
    Update("999912312359\n1\n");
    EXPECT_EQ(Outcome(Emptied()), "quiet");
    Time.Pass(1);
    EXPECT_EQ(Update(Emptied()).front(),
              "0 MalDB.Update: Taken, the service has said for a day that 0 of 2000 entries stay");
    EXPECT_EQ(DB->LiveCount(), 0);
    // The new list is the one to go by, after a restart as well.
    Restart();
    EXPECT_EQ(Outcome(Next(2) + "\n0\n" + Changes("+", 0, 2000)), "taken");
    EXPECT_EQ(Outcome(Next(3) + "\n0\n" + Changes("-", 0, 1000)), "taken");
}

TEST_F(UpdateGuardTest, AnAnswerThatPassesBeginsTheDayAnew) {
    Fill(2000);
    for (const Text& passes : {UpToDate(), Next(1) + "\n0\n"}) {
        EXPECT_EQ(Outcome(Emptied()), "held");
        Time.Pass(Date::SecondsPerDay);
        EXPECT_EQ(Update(passes).front(), "0 MalDB.Update: No longer held back, the service says otherwise");
    }
    Restart();
    EXPECT_EQ(Outcome(Emptied()), "held");
}

TEST_F(UpdateGuardTest, ADayDoesNotPassByAClockThatIsWrong) {
    Fill(2000);
    EXPECT_EQ(Outcome(Emptied()), "held");
    // Back: counted from there.
    Time.Pass(-2 * Date::SecondsPerDay);
    EXPECT_EQ(Outcome(Emptied()), "quiet");
    Time.Pass(Date::SecondsPerDay - 1);
    // Before the build: it does not run.
    const Date right = Time.Present;
    Time.Present = Date(CivilDate{2026, 1, 1, 0, 0, 0});
    EXPECT_EQ(Outcome(Emptied()), "quiet");
    Time.Pass(2 * Date::SecondsPerDay);
    EXPECT_EQ(Outcome(Emptied()), "quiet");
    Time.Present = right.PlusSeconds(1);
    EXPECT_EQ(Outcome(Emptied()), "taken");
    // Held back at such a time, it waits for the right one.
    EXPECT_EQ(Outcome(Next(2) + "\n1\n" + Changes("+", 0, 2000)), "taken");
    Time.Present = Date(CivilDate{2026, 1, 1, 0, 0, 0});
    EXPECT_TRUE(Update(Emptied())[0].ends_with("has said so for a day, counted from when the clock is right"));
    Time.Present = right;
    EXPECT_EQ(Outcome(Emptied()), "quiet");
}

TEST_F(UpdateGuardTest, ADamagedRecordCountsAsNone) {
    Fill(2000);
    Update(Emptied());
    const Text whole = Storage.Contents[RecordFile];
    for (size_t index = 0; index < whole.size(); ++index) {
        Storage.Contents[RecordFile] = whole;
        Storage.Contents[RecordFile][index] ^= 1;
        EXPECT_EQ(Restart().front(), "0 MalDB.Guard: ListGuard.bin is damaged and begun anew");
        EXPECT_EQ(Outcome(Emptied()), "held");
    }
    for (const char* lines : {"2\n", "1", "1\nstamp\t2026\n", "1\nheld\tx\n", "1\nday\t11/21/2026\n", "1\nfoo\tbar\n",
                              "1\nstamp\t202613450000\n"}) {
        EXPECT_FALSE(GuardRecord::Read(EncryptStringChk(Text("list guard ") + lines))) << lines;
    }
    EXPECT_EQ(EncryptStringChk("list guard 1\nstamp\t202611210800\nheld\t11/21/2026 08:09:10\nday\t11/21/2026\t2000\n"),
              whole);
}

TEST_F(UpdateGuardTest, ADiskThatFailsLeavesTheListGuarded) {
    Fill(2000);
    const auto files = Storage.Contents;
    for (int call = 1; call < 8; ++call) {
        Storage.FailNoMore();
        Storage.Contents = files;
        Storage.Contents["Data/ListGuard.bin.tmp~"] = "killed while it was written";
        Restart();
        EXPECT_FALSE(Storage.Exists("Data/ListGuard.bin.tmp~"));
        Time.Pass(Date::SecondsPerDay);
        Storage.FailAt(call, ErrorNumber::DiskFull, true);
        EXPECT_EQ(Outcome(Emptied()), "held");
        EXPECT_EQ(Update(Emptied()), Lines{}) << "the failure is told once";
    }
}

}  // namespace
}  // namespace tb
