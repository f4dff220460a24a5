// The real updater on a folder of the test's own, with a stub for the program.
#include <gtest/gtest.h>

#include "fakes/Raised.h"
#include "platform/win32/Win32Files.h"
#include "windows/RunningProgram.h"

namespace tb {
namespace {

constexpr const char* Caption = "Trawlbeam Updater";

class RealUpdater : public testing::Test {
protected:
    static constexpr int Libraries = 8;
    static constexpr size_t LibrarySize = 300000;

    // A version of that letter; a program with some bytes behind its end is a program still.
    static std::map<Text, Text> Version(char letter) {
        Win32Files files;
        std::map<Text, Text> contents{{"Trawlbeam.exe", ReadWholeFile(files, BuiltProgram("tbstub.exe")) + letter}};
        if (letter == 'n') contents["Trawlbeam.exe"] += "ew";
        for (int count = 0; count < Libraries; ++count)
            contents["l" + std::to_string(count) + ".dll"] = Text(LibrarySize, letter);
        return contents;
    }
    RealUpdater() {
        std::filesystem::create_directory(Path() / "Log");
        std::filesystem::copy_file(BuiltProgram("tbUpdater.exe"), Path() / "tbUpdater.exe");
        Install();
    }
    // The folder can go when the program that was started last has left.
    ~RealUpdater() override {
        Eventually([this] { return Raised([this] { m_Files.OpenForWriting(Path() / "Trawlbeam.exe"); }) == 0; });
    }
    // The old version, and the new one staged.
    void Install() {
        std::filesystem::remove_all(Path() / "Updates");
        std::filesystem::create_directory(Path() / "Updates");
        std::filesystem::remove(Path() / "started.txt");
        for (const auto& [name, content] : m_Old) Write(Path() / name, content);
        Text manifest = "<UPDATES VERSION='57'>";
        for (const auto& [name, content] : m_New) {
            Write(Path() / "Updates" / name, content);
            manifest += "<F FILE='" + name + "' SIZE='" + std::to_string(content.size()) + "' DOWNLOAD='Y'/>";
        }
        Write(Path() / "Updates" / "updates.xml", manifest + "</UPDATES>");
    }
    const std::filesystem::path& Path() const { return m_Folder.Path(); }
    void Write(const std::filesystem::path& path, const Text& content) {
        // A program that has just left may hold it for a moment.
        ASSERT_TRUE(Eventually([&] { return Raised([&] { m_Files.OpenForWriting(path); }) == 0; }));
        const auto file = m_Files.OpenForWriting(path);
        file->Write(content);
        file->Finish();
    }
    std::unique_ptr<ProgramProcess> Start() { return Start(Path()); }
    static std::unique_ptr<ProgramProcess> Start(const std::filesystem::path& folder) {
        return std::make_unique<ProgramProcess>(folder / "tbUpdater.exe",
                                                L"of a folder\\tbUpdater.exe Trawlbeam.exe Trawlbeam");
    }
    static HWND Window(const ProgramProcess& updater) {
        return FindWindowOf(updater.Id(), NormalClasses.Window, Caption);
    }
    static bool IsShown(const ProgramProcess& updater) {
        return Eventually([&] { return Window(updater) != nullptr; });
    }
    bool Holds(const std::map<Text, Text>& version) {
        return std::all_of(version.begin(), version.end(), [&](const auto& file) {
            return ReadWholeFile(m_Files, Path() / file.first) == file.second;
        });
    }
    bool IsPending() { return m_Files.Exists(Path() / "Updates" / "updates.xml"); }
    // Waits until the program of that version has been started and has left.
    bool IsStarted(const std::map<Text, Text>& version) {
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
    const std::map<Text, Text> m_Old = Version('o');
    const std::map<Text, Text> m_New = Version('n');
};

TEST_F(RealUpdater, WaitsForTheProgramInstallsAndStartsIt) {
    const std::wstring event = L"Trawlbeam test may leave " + std::to_wstring(GetCurrentProcessId());
    const OwnedObject mayLeave(CreateEventW(nullptr, TRUE, FALSE, event.c_str()));
    const ProgramProcess running(Path() / "Trawlbeam.exe", L"\"" + event + L"\"");
    const auto updater = Start();
    ASSERT_TRUE(IsShown(*updater));
    SendMessageW(Window(*updater), WM_CLOSE, 0, 0);
    // It waits a minute and no more.
    updater->Suspend();
    EXPECT_EQ(Start()->WaitForEnd(), 1U) << "there can be only one";
    const ScratchFolder other;
    for (const char* name : {"tbUpdater.exe", "Trawlbeam.exe"})
        std::filesystem::copy_file(Path() / name, other.Path() / name);
    EXPECT_EQ(Start(other.Path())->WaitForEnd(), 0U) << "in each folder";
    updater->Resume();
    EXPECT_EQ(running.WaitForEnd(0), static_cast<DWORD>(STILL_ACTIVE));
    EXPECT_TRUE(Holds(m_Old));
    SetEvent(mayLeave.Get());
    EXPECT_EQ(updater->WaitForEnd(), 0U);
    EXPECT_TRUE(Holds(m_New));
    EXPECT_FALSE(IsPending());
    EXPECT_TRUE(IsStarted(m_New));
    EXPECT_EQ(ReadWholeFile(m_Files, Path() / "Updates" / "Backup" / "57" / "l0.dll"), m_Old.at("l0.dll"));
    EXPECT_NE(Log().find("   tbUpdater: Update 57 is installed\r\n"), Text::npos) << Log();
}

TEST_F(RealUpdater, KeepsTheOldVersionWhileAFileIsInUse) {
    const auto used = m_Files.OpenForReading(Path() / "l7.dll");
    const auto updater = Start();
    HWND button = nullptr;
    ASSERT_TRUE(Eventually([&] { return IsWindowVisible(button = GetDlgItem(Window(*updater), IDOK)) != FALSE; }))
        << Log();
    SendMessageW(button, BM_CLICK, 0, 0);
    EXPECT_EQ(updater->WaitForEnd(), 0U);
    EXPECT_TRUE(Holds(m_Old));
    EXPECT_TRUE(IsPending());
    EXPECT_TRUE(IsStarted(m_Old));
}

// As a browser has the helper: the file can be moved, but not replaced.
TEST_F(RealUpdater, MovesALibraryAsideThatIsLoaded) {
    Write(Path() / "l3.dll", ReadWholeFile(m_Files, BuiltProgram("MBListEx.ocx")));
    const HMODULE loaded = LoadLibraryW((Path() / "l3.dll").c_str());
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(Start()->WaitForEnd(), 0U);
    EXPECT_TRUE(Holds(m_New) && !IsPending()) << Log();
    EXPECT_TRUE(IsStarted(m_New));
    EXPECT_NE(Log().find("l3.dll is in use and was moved aside"), Text::npos) << Log();
    FreeLibrary(loaded);
}

TEST_F(RealUpdater, TellsThatTheProgramDidNotStart) {
    Write(Path() / "Updates" / "Trawlbeam.exe", Text(m_New.at("Trawlbeam.exe").size(), 'x'));
    const auto updater = Start();
    HWND box = nullptr;
    ASSERT_TRUE(Eventually([&] { return (box = FindWindowOf(updater->Id(), "#32770", Caption)) != nullptr; })) << Log();
    EXPECT_EQ(Window(*updater), nullptr) << "or the program would not start by hand either";
    EXPECT_EQ(updater->WaitForEnd(0), static_cast<DWORD>(STILL_ACTIVE));
    PostMessageW(box, WM_CLOSE, 0, 0);
    EXPECT_EQ(updater->WaitForEnd(), 0U);
    EXPECT_NE(Log().find("Trawlbeam.exe did not start"), Text::npos) << Log();
}

// While it waits for a file that somebody holds: before the first one is replaced, between two, before the program.
TEST_F(RealUpdater, KilledHalfwayIsFinishedByTheNext) {
    const auto backup = Path() / "Updates" / "Backup";
    const auto journal = backup / "installing.xml";
    for (const auto& [held, last] :
         {std::pair("l0.dll", ""), std::pair("l4.dll", "l3.dll.new~"), std::pair("Trawlbeam.exe", "l7.dll.new~")}) {
        SCOPED_TRACE(held);
        Install();
        {
            const auto scanner = m_Files.OpenForReading(Path() / held);
            const auto updater = Start();
            EXPECT_TRUE(Eventually([&] { return m_Files.Exists(journal) && !m_Files.Exists(backup / "57" / last); }));
        }
        EXPECT_TRUE(IsPending() && m_Files.Exists(journal));
        EXPECT_EQ(Start()->WaitForEnd(), 0U) << Log();
        EXPECT_TRUE(Holds(m_New));
        EXPECT_FALSE(IsPending() || m_Files.Exists(journal));
        EXPECT_TRUE(IsStarted(m_New));
    }
}

}  // namespace
}  // namespace tb
