#include <optional>

#include "fakes/FakeFiles.h"
#include "fakes/TestFolder.h"
#include "platform/files_contract.h"
#include "platform/posix/PosixFiles.h"

namespace tb {
namespace {

class PosixKit {
public:
    Files& Storage() { return m_Files; }
    const std::filesystem::path& Folder() const { return m_Folder.Path(); }
    static void MakeFolder(const std::filesystem::path& path) { std::filesystem::create_directory(path); }
    static void MakeReadOnly(const std::filesystem::path& path) {
        std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    }

private:
    TestFolder m_Folder;
    PosixFiles m_Files;
};

class FakeKit {
public:
    FakeKit() { MakeFolder(Folder()); }
    Files& Storage() { return m_Files; }
    static std::filesystem::path Folder() { return "memory"; }
    void MakeFolder(const std::filesystem::path& path) { m_Files.Folders.insert(path); }
    void MakeReadOnly(const std::filesystem::path& path) { m_Files.ReadOnly.insert(path); }

private:
    FakeFiles m_Files;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Posix, FilesContract, PosixKit);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, FilesContract, FakeKit);

// A zone of this process, and the machine's own again.
class Zone {
public:
    explicit Zone(const char* rules) {
        if (const char* before = std::getenv("TZ")) m_Before = before;
        ::setenv("TZ", rules, 1);
        ::tzset();
    }
    Zone(const Zone&) = delete;
    Zone& operator=(const Zone&) = delete;
    ~Zone() {
        m_Before ? ::setenv("TZ", m_Before->c_str(), 1) : ::unsetenv("TZ");
        ::tzset();
    }

private:
    std::optional<Text> m_Before;
};

// One of the two seasons has not the zone's present offset, whenever this runs.
TEST(PosixFiles, KeepLocalTimesInSummerAndInWinter) {
    const Zone zone("CET-1CEST,M3.5.0,M10.5.0/3");
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
