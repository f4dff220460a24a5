// The seams to the system, each against the real one.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdlib>

#include "base/win32/SystemCodePage.h"
#include "fakes/Raised.h"
#include "platform/signatures_contract.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Win32FileVersions.h"
#include "platform/win32/Win32Processes.h"
#include "platform/win32/Win32Registry.h"
#include "platform/win32/Win32Resources.h"
#include "platform/win32/Win32Signatures.h"
#include "platform/win32/Win32Text.h"

namespace tb {
namespace {

// Moving, releasing and closing twice leave nothing open and close nothing that is another's.
TEST(Handle, ClosesWhatItHoldsOnceAndKeepsTheLastError) {
    const std::int32_t before = HandleCount::Live();
    const auto make = [] { return OwnedObject(CreateEventW(nullptr, TRUE, FALSE, nullptr)); };
    {
        OwnedObject first = make();
        OwnedObject second = make();
        const HANDLE held = first.Get();
        second = std::move(first);
        OwnedObject& alias = second;
        second = std::move(alias);
        EXPECT_EQ(second.Get(), held);
        SetLastError(ERROR_DISK_FULL);
    }
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_DISK_FULL));
    EXPECT_EQ(HandleCount::Live(), before);
}

TEST(SystemCodePage, IsReadAsItIs) {
    const CodePage western = ReadCodePage(1252).value();
    EXPECT_EQ(western.Wide, Windows1252.Wide);
    EXPECT_EQ(western.Lower, Windows1252.Lower);
    EXPECT_EQ(western.Upper, Windows1252.Upper);
    // No letter leaves its half: dotless and dotted i have their other case in ASCII.
    const CodePage turkish = ReadCodePage(1254).value();
    EXPECT_EQ(turkish.Lower[0xDD], '\xDD');
    EXPECT_EQ(turkish.Upper[0xFD], '\xFD');
    EXPECT_EQ(turkish.Lower['I'], 'i');
    for (const std::uint32_t wider : {932U, 936U, 65001U, 12345U}) EXPECT_FALSE(ReadCodePage(wider)) << wider;
}

// As the narrow functions of the system read and fold bytes, on whatever system this runs; see the CMakeLists.txt.
TEST(SystemCodePage, IsInUse) {
    const char* const due = std::getenv("TRAWLBEAM_TEST_ACP");
    ASSERT_EQ(GetACP(), due == nullptr ? 1252U : static_cast<UINT>(std::stoul(due)));
    if (GetACP() == CP_UTF8) {
        EXPECT_EQ(CodePage::InUse().Number, 1252U);
        return;
    }
    EXPECT_EQ(CodePage::InUse().Number, GetACP());
    for (int code = 1; code < 256; ++code) {
        const Text byte(1, static_cast<char>(code));
        wchar_t wide = 0;
        ASSERT_EQ(MultiByteToWideChar(CP_ACP, 0, byte.data(), 1, &wide, 1), 1);
        EXPECT_EQ(ToWide(byte), std::u16string(1, static_cast<char16_t>(wide))) << code;
        EXPECT_EQ(FromWide(ToWide(byte)), byte) << code;
        Text lower = byte;
        Text upper = byte;
        CharLowerBuffA(lower.data(), 1);
        CharUpperBuffA(upper.data(), 1);
        EXPECT_EQ(LowerCase(byte), lower) << code;
        EXPECT_EQ(UpperCase(byte), upper) << code;
    }
}

TEST(Win32Resources, AreReadWhole) {
    Win32Resources resources;
    EXPECT_EQ(resources.String(7), Text("a\0b \xe9 \x80 \"q\" \\ \r\n", 16));
    for (const int none : {8, 5000, -1}) EXPECT_EQ(resources.String(none), "") << none;
    EXPECT_EQ(resources.Custom("bytes"), Text("\1\0\377end", 6)) << "names are compared without case";
    EXPECT_EQ(Raised([&] { resources.Custom("nothing"); }), 326);
}

TEST(Win32Signatures, KeepTheContract) {
    Win32Signatures signatures;
    CheckSignatures(signatures);
}

TEST(Win32FileVersions, AreThoseOfTheResource) {
    Win32FileVersions versions;
    const std::filesystem::path own = Win32Processes().Executable();
    using Strings = std::vector<Text>;
    EXPECT_EQ(versions.Strings(own, {"FileVersion", "Comments"}), (Strings{"3.2.1 caf\xe9", ""}))
        << "without a list of languages";
    EXPECT_EQ(versions.Strings(own.parent_path() / "Trawlbeam.exe", {"OriginalFileName", "FileVersion"}),
              (Strings{"Trawlbeam.exe", TRAWLBEAM_VERSION}));
    EXPECT_EQ(versions.Strings(own.parent_path(), {"FileVersion"}), std::nullopt);
}

TEST(Win32Processes, StartAndKnowModulesAndErrors) {
    Win32Processes processes;
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
}

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
    EXPECT_EQ(m_Registry.ValueNames(User, m_Section).size(), 3U);
    for (int time = 0; time < 2; ++time) EXPECT_TRUE(m_Registry.DeleteValue(User, m_Section, "empty")) << time;
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
    EXPECT_EQ(HandleCount::Live(), before);
}

}  // namespace
}  // namespace tb
