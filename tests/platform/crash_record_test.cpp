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
    // What does not fit is cut.
    FixedText<wchar_t, 8> name;
    AddMoment(name.Add(TextView("Log")), when);
    EXPECT_EQ(std::wstring_view(name.Get(), name.Size()), L"Log2026");
}

TEST(CrashRecord, TheNewestThreeDumpsAreKeptAndTheNextToGoIsTold) {
    FakeFiles disk;
    disk.Folders.insert("/Log");
    const auto drop = [&](const std::vector<Text>& added) {
        for (const Text& name : added) disk.Contents["/Log/" + name] = "dump";
        return DropOldDumps(disk, "/Log", "Trawlbeam").filename().string();
    };
    EXPECT_EQ(drop({"Trawlbeam20261121080910.dmp", "Trawlbeam20251231235959.dmp"}), "");
    EXPECT_EQ(drop({"Trawlbeam20261121080911.dmp", "Trawlbeam20260101000000.dmp", "tbUpdater20200101000000.dmp",
                    "Trawlbeam2020.dmp", "Trawlbeam20200101000000.txt", "Trawlbeam2020010100000x.dmp"}),
              "Trawlbeam20260101000000.dmp");
    EXPECT_FALSE(disk.Exists("/Log/Trawlbeam20251231235959.dmp"));
    EXPECT_EQ(disk.Contents.size(), 7U) << "what is no dump of this program stays";
    // What cannot be deleted, or listed, is passed over.
    disk.ReadOnly.insert("/Log/Trawlbeam20260101000000.dmp");
    EXPECT_EQ(drop({"Trawlbeam20261121080912.dmp", "Trawlbeam20261121080913.dmp"}), "Trawlbeam20261121080911.dmp");
    EXPECT_EQ(disk.Contents.size(), 8U);
    disk.FailAt(1);
    EXPECT_EQ(drop({}), "");
}

}  // namespace
}  // namespace tb
