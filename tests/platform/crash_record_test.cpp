#include "platform/CrashRecord.h"

#include <gtest/gtest.h>

#include "fakes/FakeFiles.h"

namespace tb {
namespace {

TEST(CrashRecord, TellsThePlaceInALineOfTheLog) {
    const CivilDate when{2026, 11, 21, 8, 9, 10};
    const auto line = [&](const Crash& crash, TextView speaker = {}) { return Text(CrashLine(crash, speaker).Get()); };
    EXPECT_EQ(line({0xC0000005, L"Trawlbeam.exe", 0x1A2B3, when}),
              "11/21/2026 08:09:10   Crash C0000005 at Trawlbeam.exe+1A2B3\r\n");
    EXPECT_EQ(line({AbortCode, L"odd\u0416.dll", 0, when}, "tbUpdater: "),
              "11/21/2026 08:09:10   tbUpdater: Crash 40000015 at odd?.dll+0\r\n");
    EXPECT_EQ(line({0xC00000FD, {}, 0x7FF612345678, when}),
              "11/21/2026 08:09:10   Crash C00000FD at 00007FF612345678\r\n");
}

TEST(CrashRecord, CutsWhatDoesNotFit) {
    FixedText<wchar_t, 8> name;
    AddMoment(name.Add(TextView("Log")), {2026, 11, 21, 8, 9, 10});
    EXPECT_EQ(std::wstring_view(name.Get(), name.Size()), L"Log2026");
}

struct DumpsTest : testing::Test {
    DumpsTest() { Disk.Folders.insert("/Log"); }
    void Make(const std::vector<Text>& names) {
        for (const Text& name : names) Disk.Contents["/Log/" + name] = "dump";
    }
    Text Drop() { return DropOldDumps(Disk, "/Log", "Trawlbeam").filename().string(); }

    FakeFiles Disk;
};

TEST_F(DumpsTest, KeepsTheNewestThreeAndTellsWhichGoesNext) {
    Make({"Trawlbeam20261121080910.dmp", "Trawlbeam20251231235959.dmp"});
    EXPECT_EQ(Drop(), "");
    Make({"Trawlbeam20261121080911.dmp", "Trawlbeam20260101000000.dmp", "tbUpdater20200101000000.dmp",
          "Trawlbeam2020.dmp", "Trawlbeam20200101000000.txt", "Trawlbeam2020010100000x.dmp"});
    EXPECT_EQ(Drop(), "Trawlbeam20260101000000.dmp");
    EXPECT_EQ(Disk.Contents.count("/Log/Trawlbeam20251231235959.dmp"), 0U);
    EXPECT_EQ(Disk.Contents.size(), 7U) << "what is no dump of this program stays";
}

TEST_F(DumpsTest, PassesOverWhatCannotBeDeletedOrListed) {
    Make({"Trawlbeam20261121080910.dmp", "Trawlbeam20261121080911.dmp", "Trawlbeam20261121080912.dmp",
          "Trawlbeam20261121080913.dmp", "Trawlbeam20261121080914.dmp"});
    Disk.ReadOnly.insert("/Log/Trawlbeam20261121080910.dmp");
    EXPECT_EQ(Drop(), "Trawlbeam20261121080912.dmp");
    EXPECT_EQ(Disk.Contents.size(), 4U);
    Disk.FailAt(1);
    EXPECT_EQ(Drop(), "");
}

}  // namespace
}  // namespace tb
