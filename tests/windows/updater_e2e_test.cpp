// The real updater on a folder of the test's own, with a stub for the program.
#include <gtest/gtest.h>

#include <fstream>

#include "fakes/Raised.h"
#include "platform/win32/Win32Files.h"
#include "windows/OnlyProgram.h"
#include "windows/ProgramProcess.h"
#include "windows/ScratchFolder.h"

namespace tb {
namespace {

constexpr const char* Caption = "Trawlbeam Updater";

class RealUpdater : public testing::Test {
protected:
    using Version = std::map<Text, Text>;

    // The old version, and the new one staged.
    RealUpdater() {
        std::filesystem::create_directories(Path() / "Updates");
        std::filesystem::create_directory(Path() / "Log");
        std::filesystem::copy_file(BuiltProgram("tbUpdater.exe"), Path() / "tbUpdater.exe");
        for (const auto& [name, content] : m_Old) Write(Path() / name, content);
        Text manifest = "<UPDATES VERSION='57'>";
        for (const auto& [name, content] : m_New) {
            Write(Path() / "Updates" / name, content);
            manifest += "<F FILE='" + name + "' SIZE='" + std::to_string(content.size()) + "' DOWNLOAD='Y'/>";
        }
        Write(Path() / "Updates" / "updates.xml", manifest + "</UPDATES>");
    }
    // The folder can go when the program that was started last has left.
    ~RealUpdater() override {
        Eventually([this] { return Raised([this] { m_Files.OpenForWriting(Path() / "Trawlbeam.exe"); }) == 0; });
    }
    const std::filesystem::path& Path() const { return m_Folder.Path(); }
    static void Write(const std::filesystem::path& path, const Text& content) {
        std::ofstream(path, std::ios::binary) << content;
    }
    static std::unique_ptr<ProgramProcess> Start(const std::filesystem::path& folder) {
        return std::make_unique<ProgramProcess>(folder / "tbUpdater.exe",
                                                L"of a folder\\tbUpdater.exe Trawlbeam.exe Trawlbeam");
    }
    static HWND Window(const ProgramProcess& updater) {
        return FindWindowOf(updater.Id(), NormalClasses.Window, Caption);
    }
    bool Holds(const Version& version) {
        return std::all_of(version.begin(), version.end(), [&](const auto& file) {
            return ReadWholeFile(m_Files, Path() / file.first) == file.second;
        });
    }
    bool IsPending() { return m_Files.Exists(Path() / "Updates" / "updates.xml"); }
    // Waits until the program of that version has been started and has left.
    bool IsStarted(const Version& version) {
        const Text line = std::to_string(version.at("Trawlbeam.exe").size()) + "\n";
        Text started;
        return Eventually([&] {
            Raised([&] { started = ReadWholeFile(m_Files, Path() / "started.txt"); });
            return started.ends_with(line);
        });
    }
    Text Log() {
        Text log;
        for (const auto& name : m_Files.List(Path() / "Log")) log += ReadWholeFile(m_Files, Path() / "Log" / name);
        return log;
    }

    const OnlyProgram m_Only;
    const ScratchFolder m_Folder;
    Win32Files m_Files;
    // A program with some bytes behind its end is a program still.
    const Text m_Stub = ReadWholeFile(m_Files, BuiltProgram("tbstub.exe"));
    const Version m_Old{{"Trawlbeam.exe", m_Stub + "old"}, {"a.dll", "old a"}, {"b.dll", "old b"}};
    const Version m_New{{"Trawlbeam.exe", m_Stub + "newer"}, {"a.dll", "new a"}, {"b.dll", "new b"}};
};

TEST_F(RealUpdater, WaitsForTheProgramInstallsAndStartsIt) {
    const std::wstring event = L"Trawlbeam test may leave " + std::to_wstring(GetCurrentProcessId());
    const OwnedObject mayLeave(CreateEventW(nullptr, TRUE, FALSE, event.c_str()));
    const ProgramProcess running(Path() / "Trawlbeam.exe", L"\"" + event + L"\"");
    const auto updater = Start(Path());
    ASSERT_TRUE(Eventually([&] { return Window(*updater) != nullptr; }));
    SendMessageW(Window(*updater), WM_CLOSE, 0, 0);
    EXPECT_NE(Window(*updater), nullptr) << "it cannot be closed";
    // It waits a minute and no more.
    updater->Suspend();
    EXPECT_EQ(Start(Path())->WaitForEnd(), 1U) << "there can be only one";
    const ScratchFolder other;
    for (const char* name : {"tbUpdater.exe", "Trawlbeam.exe"}) {
        std::filesystem::copy_file(Path() / name, other.Path() / name);
    }
    EXPECT_EQ(Start(other.Path())->WaitForEnd(), 0U) << "in each folder";
    updater->Resume();
    EXPECT_TRUE(Holds(m_Old));
    SetEvent(mayLeave.Get());
    EXPECT_EQ(updater->WaitForEnd(), 0U);
    EXPECT_TRUE(Holds(m_New) && !IsPending());
    EXPECT_TRUE(IsStarted(m_New));
    EXPECT_EQ(ReadWholeFile(m_Files, Path() / "Updates" / "Backup" / "57" / "a.dll"), "old a");
    EXPECT_NE(Log().find("   tbUpdater: Update 57 is installed\r\n"), Text::npos) << Log();
}

TEST_F(RealUpdater, KeepsTheOldVersionWhileAFileIsInUse) {
    const auto used = m_Files.OpenForReading(Path() / "b.dll");
    const auto updater = Start(Path());
    HWND button = nullptr;
    ASSERT_TRUE(Eventually([&] { return IsWindowVisible(button = GetDlgItem(Window(*updater), IDOK)) != FALSE; }))
        << Log();
    SendMessageW(button, BM_CLICK, 0, 0);
    EXPECT_EQ(updater->WaitForEnd(), 0U);
    EXPECT_TRUE(Holds(m_Old) && IsPending());
    EXPECT_TRUE(IsStarted(m_Old));
}

// As a browser has the helper: the file can be moved, but not replaced.
TEST_F(RealUpdater, MovesALibraryAsideThatIsLoaded) {
    Write(Path() / "a.dll", ReadWholeFile(m_Files, BuiltProgram("MBListEx.ocx")));
    const HMODULE loaded = LoadLibraryW((Path() / "a.dll").c_str());
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(Start(Path())->WaitForEnd(), 0U);
    EXPECT_TRUE(Holds(m_New) && !IsPending()) << Log();
    EXPECT_TRUE(IsStarted(m_New));
    EXPECT_NE(Log().find("a.dll is in use and was moved aside"), Text::npos) << Log();
    FreeLibrary(loaded);
}

}  // namespace
}  // namespace tb
