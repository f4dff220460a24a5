#include <gtest/gtest.h>

#include "fakes/FakeFiles.h"
#include "fakes/Raised.h"
#include "fakes/TestFolder.h"
#include "platform/AtomicWrite.h"
#include "platform/CrashRecord.h"
#include "platform/files_contract.h"
#include "platform/posix/PosixFiles.h"

namespace tb {
namespace {

struct PosixKit : FilesKit {
    Files& Storage() override { return Disk; }
    std::filesystem::path Folder() override { return Scratch.Path(); }
    void MakeFolder(const std::filesystem::path& path) override { std::filesystem::create_directory(path); }
    void MakeReadOnly(const std::filesystem::path& path) override {
        std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    }
    TestFolder Scratch;
    PosixFiles Disk;
};

struct FakeKit : FilesKit {
    FakeKit() { Disk.Folders.insert("memory"); }
    Files& Storage() override { return Disk; }
    std::filesystem::path Folder() override { return "memory"; }
    void MakeFolder(const std::filesystem::path& path) override { Disk.Folders.insert(path); }
    void MakeReadOnly(const std::filesystem::path& path) override { Disk.ReadOnly.insert(path); }
    FakeFiles Disk;
};

template <typename Kit>
std::unique_ptr<FilesKit> Make() {
    return std::make_unique<Kit>();
}
INSTANTIATE_TEST_SUITE_P(Posix, FilesContract, testing::Values(&Make<PosixKit>));
INSTANTIATE_TEST_SUITE_P(Fake, FilesContract, testing::Values(&Make<FakeKit>));

// One of the two seasons has not the zone's present offset, whenever this runs.
TEST(PosixFiles, KeepLocalTimesInSummerAndInWinter) {
    ::setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    ::tzset();
    const TestFolder folder;
    folder.Write("dated", "x");
    PosixFiles files;
    for (const auto& [month, hoursAhead] : {std::pair{1, 1}, std::pair{7, 2}}) {
        const Date date(CivilDate{2000, month, 1, 0, 0, 0});
        files.SetTimes(folder.Path() / "dated", {date, date, date}, true);
        EXPECT_EQ(files.Times(folder.Path() / "dated").Modified, date);
        files.SetTimes(folder.Path() / "dated", {date, date, date}, false);
        EXPECT_EQ(files.Times(folder.Path() / "dated").Modified, date.PlusSeconds(hoursAhead * 3600));
    }
}

using World = std::map<std::filesystem::path, Text>;

const std::filesystem::path Target = "folder/target";

// Every failing step is walked: the target is the old or the new one, the temporary file is gone and nothing stays
// open.
TEST(AtomicWrite, LeavesTheOldFileWhateverStepFails) {
    for (const World& before : {World{{Target, "old"}}, World()}) {
        int step = 0;
        for (bool failed = true; failed;) {
            FakeFiles files;
            files.Folders = {"folder"};
            files.Contents = before;
            files.FailAt(++step);
            const auto write = [&] {
                WriteFileAtomically(files, Target, [](FileWriter& writer) {
                    writer.Write("new ");
                    writer.Write("content");
                });
            };
            failed = Raised(write) != 0;
            EXPECT_EQ(files.Contents, failed ? before : (World{{Target, "new content"}})) << "step " << step;
            EXPECT_EQ(files.OpenCount(), 0U) << "step " << step;
        }
        // Opening, two writes, the flush and the replacing can fail.
        EXPECT_EQ(step, 6);
    }
}

// Also when cleaning up fails.
TEST(AtomicWrite, PassesOnWhatTheContentRaises) {
    for (const bool failing : {false, true}) {
        FakeFiles files;
        files.Folders = {"folder"};
        files.Contents[Target] = "old";
        const auto content = [&](FileWriter& writer) {
            writer.Write("half");
            if (failing) files.FailAt(1, ErrorNumber::DeviceIO, true);
            throw Error(ErrorNumber::Subscript);
        };
        EXPECT_EQ(Raised([&] { WriteFileAtomically(files, Target, content); }), 9);
        files.FailNoMore();
        DropUnfinished(files, Target);
        EXPECT_EQ(files.Contents, (World{{Target, "old"}}));
    }
}

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
