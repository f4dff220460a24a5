// The seams to the system, each against the real one.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>

#include "fakes/Raised.h"
#include "platform/win32/Win32FileVersions.h"
#include "platform/win32/Win32Machine.h"
#include "platform/win32/Win32Processes.h"
#include "platform/win32/Win32Pump.h"
#include "platform/win32/Win32Random.h"
#include "platform/win32/Win32Registry.h"
#include "platform/win32/Win32Resources.h"
#include "platform/win32/Win32Shell.h"
#include "platform/win32/Win32Text.h"
#include "windows/ProgramProcess.h"
#include "windows/ScratchFolder.h"

namespace tb {
namespace {

constexpr DWORD DeadlineMs = 30000;

TEST(Win32Random, GivesNumbersFromZeroToBelowOneAndOthersEachTime) {
    Win32Random first;
    Sleep(2);
    Win32Random second;
    int below = 0;
    int equal = 0;
    for (int count = 0; count < 1000; ++count) {
        const double number = first.Next();
        ASSERT_GE(number, 0);
        ASSERT_LT(number, 1);
        below += number < 0.5 ? 1 : 0;
        equal += number == second.Next() ? 1 : 0;
    }
    EXPECT_NEAR(below, 500, 100);
    EXPECT_LT(equal, 10);
}

TEST(Win32Pump, HandlesWhatWaitsAndKeepsTheEndOfTheLoop) {
    OwnedWindow window(CreateWindowExA(0, "EDIT", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr));
    ASSERT_TRUE(window);
    Win32Pump pump;
    PostMessageA(window.Get(), WM_CHAR, 'x', 0);
    pump.ProcessMessages();
    EXPECT_EQ(GetWindowTextLengthA(window.Get()), 1);
    const ULONGLONG start = GetTickCount64();
    pump.Sleep(60);
    pump.Sleep(-1);
    EXPECT_GE(GetTickCount64() - start, 40U);
    PostMessageA(window.Get(), WM_CHAR, 'y', 0);
    PostQuitMessage(5);
    pump.ProcessMessages();
    pump.ProcessMessages();
    EXPECT_EQ(GetWindowTextLengthA(window.Get()), 2);
    MSG message{};
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.wParam, 5U);
}

TEST(Win32Resources, AreReadWhole) {
    Win32Resources resources;
    EXPECT_EQ(resources.String(7), Text("a\0b \xe9 \x80 \"q\" \\ \r\n", 16));
    EXPECT_EQ(resources.String(9), "nine");
    EXPECT_EQ(resources.String(8), "") << "a gap between two";
    EXPECT_EQ(resources.String(5000), "");
    EXPECT_EQ(resources.String(-1), "");
    EXPECT_EQ(resources.Custom("bytes"), Text("\1\0\377end", 6)) << "names are compared without case";
    EXPECT_EQ(Raised([&] { resources.Custom("nothing"); }), 326);
}

TEST(Win32FileVersions, AreThoseOfTheResource) {
    Win32FileVersions versions;
    const std::filesystem::path own = Win32Processes().Executable();
    using Strings = std::vector<Text>;
    EXPECT_EQ(versions.Strings(own, {"FileVersion", "Comments"}), (Strings{"3.2.1 caf\xe9", ""}))
        << "without a list of languages";
    EXPECT_EQ(versions.Strings(own.parent_path() / "Trawlbeam.exe", {"OriginalFileName", "FileVersion"}),
              (Strings{"Trawlbeam.exe", TRAWLBEAM_VERSION}));
    EXPECT_EQ(versions.Strings(own.parent_path() / "absent.exe", {"FileVersion"}), std::nullopt);
    EXPECT_EQ(versions.Strings(own.parent_path(), {"FileVersion"}), std::nullopt);
}

TEST(Win32Processes, KnowAnotherInstanceByItsFile) {
    constexpr DWORD Alone = 40;
    constexpr DWORD Second = 41;
    const ScratchFolder folder;
    const std::filesystem::path one = folder.Path() / "one.exe";
    const std::filesystem::path other = folder.Path() / "other.exe";
    std::filesystem::copy_file(BuiltProgram("tbinstance.exe"), one);
    std::filesystem::copy_file(one, other);
    EXPECT_EQ(ProgramProcess(one, L"ask").WaitForEnd(DeadlineMs), Alone);
    {
        const ProgramProcess first(one, L"linger");
        EXPECT_EQ(ProgramProcess(one, L"ask").WaitForEnd(DeadlineMs), Second);
        EXPECT_EQ(ProgramProcess(other, L"ask").WaitForEnd(DeadlineMs), Alone) << "another file of the folder";
    }
    EXPECT_EQ(ProgramProcess(one, L"ask").WaitForEnd(DeadlineMs), Alone) << "the first has ended";
}

TEST(Win32Processes, StartAndKnowModulesAndErrors) {
    Win32Processes processes;
    EXPECT_TRUE(processes.IsModuleLoaded(PathText(processes.Executable().filename())));
    EXPECT_TRUE(processes.IsModuleLoaded("KERNEL32.dll"));
    EXPECT_FALSE(processes.IsModuleLoaded("trawlbeam no such.exe"));
    EXPECT_EQ(processes.Start("\"no such program.exe\" argument"), 0U);
    const std::uint32_t started = processes.Start("cmd.exe /c exit");
    EXPECT_NE(started, 0U);
    const std::filesystem::path shell = std::filesystem::path(L"C:\\windows\\system32") / L"cmd.exe";
    EXPECT_NE(processes.StartProgram(shell, "no such program.exe /c exit"), 0U) << "only the file counts";
    EXPECT_EQ(processes.StartProgram(L"no such program.exe", "cmd.exe /c exit"), 0U);
    EXPECT_EQ(processes.SetWorkingSetSize(3145728, 6291456), 0U);
    const Text denied = processes.SystemErrorText(ERROR_ACCESS_DENIED);
    EXPECT_NE(denied.find("ccess"), Text::npos) << denied;
    EXPECT_TRUE(denied.ends_with("\r\n")) << "as the system ends it";
    EXPECT_EQ(processes.SystemErrorText(0x20001234), "");
}

TEST(Win32Shell, TellsThatItRefused) { EXPECT_FALSE(Win32Shell().Open("C:\\no such folder\\no such file.txt")); }

class Win32RegistryTest : public testing::Test {
protected:
    static constexpr RegistryRoot User = RegistryRoot::CurrentUser;
    ~Win32RegistryTest() override {
        m_Registry.DeleteKey(User, m_Section + "\\below");
        m_Registry.DeleteKey(User, m_Section);
    }
    const Text m_Section = "Software\\Trawlbeam test " + std::to_string(GetCurrentProcessId());
    Win32Registry m_Registry;
};

TEST_F(Win32RegistryTest, KeepsTexts) {
    EXPECT_FALSE(m_Registry.KeyExists(User, m_Section));
    EXPECT_EQ(m_Registry.ReadText(User, m_Section, "x"), std::nullopt);
    const Text value = "caf\xe9 \x80 " + Text(5000, 'v');
    EXPECT_TRUE(m_Registry.WriteText(User, m_Section, "n\xe4me", value)) << "makes the key";
    EXPECT_TRUE(m_Registry.WriteText(User, m_Section, "", "default"));
    EXPECT_TRUE(m_Registry.WriteText(User, m_Section, "empty", ""));
    EXPECT_EQ(m_Registry.ReadText(User, m_Section, "N\xc4ME"), value);
    EXPECT_EQ(m_Registry.ReadText(User, m_Section, ""), "default");
    EXPECT_EQ(m_Registry.ReadText(User, m_Section, "empty"), "");
    std::vector<Text> names = m_Registry.ValueNames(User, m_Section);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<Text>{"", "empty", "n\xe4me"}));
    EXPECT_TRUE(m_Registry.DeleteValue(User, m_Section, "empty"));
    EXPECT_TRUE(m_Registry.DeleteValue(User, m_Section, "empty")) << "already gone";
    EXPECT_EQ(m_Registry.ReadText(User, m_Section, "empty"), std::nullopt);
    EXPECT_FALSE(m_Registry.DeleteValue(User, m_Section + "\\none", "x"));
    const DWORD number = 1;
    RegSetKeyValueA(HKEY_CURRENT_USER, m_Section.c_str(), "number", REG_DWORD, &number, sizeof number);
    EXPECT_EQ(m_Registry.ReadText(User, m_Section, "number"), std::nullopt) << "no text";
}

TEST_F(Win32RegistryTest, KeepsKeys) {
    const std::int32_t before = HandleCount::Live();
    EXPECT_FALSE(m_Registry.DeleteKey(User, m_Section));
    EXPECT_TRUE(m_Registry.CreateKey(User, m_Section + "\\below"));
    EXPECT_TRUE(m_Registry.CreateKey(User, m_Section)) << "it is there";
    EXPECT_EQ(m_Registry.SectionNames(User, m_Section), std::vector<Text>{"below"});
    EXPECT_FALSE(m_Registry.DeleteKey(User, m_Section)) << "there is a key below";
    EXPECT_TRUE(m_Registry.DeleteKey(User, m_Section + "\\below"));
    EXPECT_TRUE(m_Registry.DeleteKey(User, m_Section));
    EXPECT_TRUE(m_Registry.SectionNames(User, m_Section).empty());
    EXPECT_EQ(HandleCount::Live(), before);
}

TEST(Win32Machine, TellsOfThisMachine) {
    Win32Machine machine;
    const SystemVersion version = machine.Version();
    EXPECT_EQ(version.Platform, 2);
    EXPECT_GE(version.Major, 6);
    EXPECT_GT(version.Build, 0);
    for (const Text& folder : {machine.WindowsFolder(), machine.SystemFolder(), machine.TempFolder()}) {
        EXPECT_FALSE(folder.ends_with("\\")) << folder;
        EXPECT_TRUE(std::filesystem::is_directory(TextPath(folder))) << folder;
    }
    EXPECT_TRUE(LowerCase(machine.SystemFolder()).starts_with(LowerCase(machine.WindowsFolder())));
    char user[256] = "";
    GetEnvironmentVariableA("USERNAME", user, sizeof user);
    EXPECT_EQ(machine.UserName(), user);
    char computer[256] = "";
    DWORD size = sizeof computer;
    GetComputerNameA(computer, &size);
    EXPECT_EQ(machine.ComputerName(), computer);
    EXPECT_FALSE(machine.ComputerName().empty());
    EXPECT_GT(machine.Disk().FreeBytes, 0);
    EXPECT_GE(machine.Disk().TotalBytes, machine.Disk().FreeBytes);
    const Machine::MemoryState memory = machine.Memory();
    EXPECT_GT(memory.PhysicalAvailable, 0);
    EXPECT_GE(memory.PhysicalTotal, memory.PhysicalAvailable);
    EXPECT_GE(memory.VirtualTotal, memory.VirtualAvailable);
    const Machine::ScreenState screen = machine.Screen();
    EXPECT_EQ(screen.Width, machine.Metric(SM_CXSCREEN));
    EXPECT_GT(screen.Height, 0);
    EXPECT_GE(screen.BitsPerPixel, 8);
    EXPECT_GE(screen.TwipsPerPixel, 1);
    SetLastError(1234);
    EXPECT_EQ(machine.LastErrorCode(), 1234U);
}

}  // namespace
}  // namespace tb
