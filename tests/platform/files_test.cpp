#include "fakes/FakeFiles.h"
#include "fakes/TestFolder.h"
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

}  // namespace
}  // namespace tb
