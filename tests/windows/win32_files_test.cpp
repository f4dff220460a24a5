#include "platform/win32/Win32Files.h"

#include <thread>

#include "platform/files_contract.h"
#include "platform/win32/Handle.h"
#include "windows/Eventually.h"
#include "windows/ScratchFolder.h"

namespace tb {
namespace {

struct Win32Kit : FilesKit {
    Files& Storage() override { return Disk; }
    std::filesystem::path Folder() override { return Scratch.Path(); }
    void MakeFolder(const std::filesystem::path& path) override { std::filesystem::create_directory(path); }
    void MakeReadOnly(const std::filesystem::path& path) override {
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    }
    ScratchFolder Scratch;
    Win32Files Disk;
};

std::unique_ptr<FilesKit> MakeKit() { return std::make_unique<Win32Kit>(); }
INSTANTIATE_TEST_SUITE_P(Win32, FilesContract, testing::Values(&MakeKit));

class Win32FilesTest : public testing::Test {
protected:
    Win32FilesTest() { m_Files.Append(m_Target, "old"); }
    // As another program would open the file.
    OwnedFile OpenByAnother(DWORD access = GENERIC_READ) const {
        return OwnedFile(CreateFileW(m_Target.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                     OPEN_EXISTING, 0, nullptr));
    }

    ScratchFolder m_Folder;
    Win32Files m_Files;
    std::filesystem::path m_Target = m_Folder.Path() / "target";
};

TEST_F(Win32FilesTest, ReplacesAFileThatAScannerHoldsForAMoment) {
    const auto made = m_Folder.Path() / "made";
    m_Files.Append(made, "new");
    OwnedFile held = OpenByAnother();
    EXPECT_EQ(Raised([&] { m_Files.Replace(made, m_Target); }), 70) << "it stays held";
    EXPECT_EQ(ReadWholeFile(m_Files, m_Target), "old");
    // For a moment: neither before the first try nor after the last. A busy machine may miss it.
    EXPECT_TRUE(Eventually([&] {
        m_Files.Append(made, "er");
        held = OpenByAnother();
        ULONGLONG released = 0;
        std::thread scanner([&] {
            Sleep(40);
            released = GetTickCount64();
            held.Close();
        });
        const ULONGLONG begun = GetTickCount64();
        const std::int32_t error = Raised([&] { m_Files.Replace(made, m_Target); });
        scanner.join();
        return error == 0 && released > begun + 10;
    }));
    EXPECT_TRUE(ReadWholeFile(m_Files, m_Target).ends_with("er"));
}

TEST_F(Win32FilesTest, LetsNobodyWriteAFileBeingReadOrReadOneBeingWritten) {
    auto reader = m_Files.OpenForReading(m_Target);
    EXPECT_FALSE(OpenByAnother(GENERIC_WRITE));
    reader.reset();
    const auto writer = m_Files.OpenForWriting(m_Target);
    EXPECT_FALSE(OpenByAnother());
    EXPECT_EQ(Raised([&] { m_Files.Delete(m_Target); }), 70);
    writer->Finish();
    EXPECT_EQ(ReadWholeFile(m_Files, m_Target), "");
    EXPECT_EQ(Raised([&] { m_Files.Delete(m_Target); }), 0);
}

TEST_F(Win32FilesTest, TellsLocalTimes) {
    for (const WORD month : {WORD{1}, WORD{7}}) {
        const SYSTEMTIME moment{2000, month, 0, 1, 13, 14, 15, 0};
        const Date universal(CivilDate{2000, month, 1, 13, 14, 15});
        m_Files.SetTimes(m_Target, {universal, universal, universal}, false);
        SYSTEMTIME local{};
        SystemTimeToTzSpecificLocalTime(nullptr, &moment, &local);
        EXPECT_EQ(m_Files.Times(m_Target).Modified,
                  Date(CivilDate{local.wYear, local.wMonth, local.wDay, local.wHour, local.wMinute, local.wSecond}));
    }
    const Date tooEarly(CivilDate{1600, 12, 31, 0, 0, 0});
    EXPECT_EQ(Raised([&] { m_Files.SetTimes(m_Target, {tooEarly, tooEarly, tooEarly}, true); }), 5);
}

}  // namespace
}  // namespace tb
