// Starts of the real program, told by the log that it writes.
#include <windows.h>

#include <gtest/gtest.h>

#include <regex>

#include "platform/win32/Win32Files.h"
#include "platform/win32/Win32Text.h"
#include "shell/helpers/DebugSwitch.h"
#include "windows/RunningProgram.h"

namespace tb {
namespace {

const Text Begun = "   " + Text(80, '-') + "\n   Starting " + TRAWLBEAM_VERSION + "\n";
const Text Loaded =
    "   Malicious Database Load TBDB202611210900.BIN: OK\n"
    "   Malicious Database Update Error: 5 Invalid procedure call or argument\n";
// Without a service it makes a reference file of its own, which has no countries.
const Text OwnReference = "   Error Load Reference Data: 91 Object variable or With block variable not set\n";
const Text FirstLoaded =
    "   Missing Reference File: reference.bin\n"
    "   Error Retrieving Reference Data: 5 Invalid procedure call or argument\n" +
    OwnReference + Loaded;
const Text SetupBegun = " D Controller StartActivity (Count = 1): Trawlbeam Setup\n";
const Text SetupEnded = "Controller EndActivity (Count = 0): Trawlbeam Setup\n";
const Text Shutdown = "   Trawlbeam Shutdown " TRAWLBEAM_VERSION "\n";
const Text Blocked = RunningProgram::Blocked;

Text Ask(const Text& fields) { return Browser().Ask(fields); }

// In debug mode each line has the number of the run behind its mark; it is taken out.
Text WithoutSession(const Text& log) { return std::regex_replace(log, std::regex("(^|\n)( . )[0-9]+ "), "$1$2"); }

// The first start has no folder for its first lines; the second tells all. What was allowed holds, whatever characters
// stood in one of the URLs.
TEST(StartOfTheProgram, TheSecondTimeItKnowsTheFirst) {
    const auto folder = std::make_shared<ProgramFolder>();
    // No second cycle writes a line in between.
    folder->WriteSetting("TIMERS", "EVILDB_INTERVAL", "3600");
    // The line of the log.
    const auto ask = [&](const Text& url, const Text& reply) {
        EXPECT_EQ(Ask("Check\t" + url), reply);
        return "   Checking: " + url + " (" + reply + ")\n";
    };
    Text lines = FirstLoaded;
    {
        const RunningProgram program(folder);
        EXPECT_EQ(folder->Log(), lines);
        EXPECT_EQ(RunningProgram::ExitThroughTray(false), 0U);
        lines += Shutdown + ask("https://phish.test", Blocked);
        EXPECT_EQ(folder->Log(), lines);
        for (const char* url : {"https://phish.test/", "http://evil.example/offer%3Cb%0D%0A&lt;"}) {
            EXPECT_EQ(Ask(Text("Allow\t") + url), "");
        }
        EXPECT_EQ(RunningProgram::ExitThroughTray(true), 0U);
        EXPECT_EQ(program.WaitForEnd(), 0U);
    }
    EXPECT_TRUE(folder->Log().ends_with(Shutdown));
    EXPECT_NE(folder->Settings().find("<ELEMENT NAME='AutoUpdate'>1</ELEMENT>"), Text::npos);
    const size_t first = folder->Log().size();
    const RunningProgram second(folder);
    EXPECT_EQ(folder->Log().substr(first), Begun + OwnReference + Loaded);
    ask("https://phish.test/x", "OK");
    ask("http://evil.example/offer%3Cb%0D%0A&lt;/c", "OK");
    ask("http://evil.example/offer", Blocked);
}

// It waits for the first to go, in steps of five seconds; here the first goes in one of these, and in its place another
// folder's program holds the channel. All but the first are in debug mode.
TEST(StartOfTheProgram, TheSecondInstanceWaitsWakesAndEnds) {
    const auto woken = std::make_shared<ProgramFolder>();
    woken->WriteSetting("Main", DebugSwitch(), "1");
    const ProgramFolder folder;
    std::filesystem::create_directory(folder.Path() / "Log");
    const auto program = folder.Path() / "Trawlbeam.exe";
    const Text alone = Begun + FirstLoaded;
    const Text waiting = alone + Begun + " D Trawlbeam.ini initialized\n" + SetupBegun +
                         "   Trawlbeam CheckNameAndPreviousInstance - App.PrevInstance TRUE\n"
                         "   Trawlbeam Sleeping while App.PrevInstance (0)\n";
    const auto log = [&folder] { return WithoutSession(folder.Log()); };
    RunningProgram other(woken, SetupEnded);
    const HWND diagnostics = FindWindowW(L"ThunderRT6FormDC", L"Trawlbeam Controller Debug");
    EXPECT_TRUE(IsWindowVisible(diagnostics));
    SendMessageW(diagnostics, WM_CLOSE, 0, 0);
    EXPECT_EQ(Ask("Check\thttps://phish.test"), Blocked) << "closing it by its frame does not end the program";
    {
        auto first = std::make_unique<ProgramProcess>(program);
        ASSERT_TRUE(Eventually([&] { return folder.Log() == alone; })) << folder.Log();
        folder.WriteSetting("Main", DebugSwitch(), "1");
        const ProgramProcess second(program);
        ASSERT_TRUE(Eventually([&] { return log().starts_with(waiting); })) << log();
        first.reset();
        EXPECT_EQ(second.WaitForEnd(), 0U);
    }
    EXPECT_TRUE(
        log().ends_with(")\n   Trawlbeam CheckNameAndPreviousInstance - App.PrevInstance, send TBWAKEUP\n"
                        " D CheckNameAndPrevInstance TRUE, exiting\n D Trawlbeam AllDone\n D " +
                        SetupEnded))
        << log();
    EXPECT_TRUE(WithoutSession(other.Log()).ends_with(" D There is no window frmTrawlMain\n")) << other.Log();
}

TEST(GatesOfTheProgram, StopWhenTheUserHasBeenTold) {
    const OnlyProgram only;
    const ProgramFolder folder;
    std::filesystem::create_directory(folder.Path() / "Log");
    folder.WriteSetting("Main", "BackColor", "x");
    const ProgramProcess unexpected(folder.Path() / "Trawlbeam.exe");
    AnswerBox(unexpected.Id(), "Trawlbeam", "13 Type mismatch", "OK");
    EXPECT_EQ(unexpected.WaitForEnd(), 1U);
    EXPECT_TRUE(folder.Log().ends_with("   Trawlbeam error: 13 Type mismatch\n")) << folder.Log();
}

// The program file holds the deployment's skin, cut into string resources, as one text in the code page.
TEST(ProgramFile, HoldsTheSkinOfItsDeployment) {
    const HMODULE file = LoadLibraryExW(BuiltProgram("Trawlbeam.exe").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(file, nullptr);
    std::wstring skin;
    for (UINT id = 256; id <= 296; ++id) {
        const wchar_t* piece = nullptr;
        // With no room given it tells where the string lies, however long.
        const int length = LoadStringW(file, id, reinterpret_cast<wchar_t*>(&piece), 0);
        skin.append(piece, static_cast<size_t>(length));
    }
    FreeLibrary(file);
    Win32Files files;
    EXPECT_EQ(ReadWholeFile(files, BuiltProgram("Trawlbeam.exe")).find(DebugSwitch()), Text::npos)
        << "the debug switch is told to operators only";
    EXPECT_EQ(skin, std::filesystem::u8path(ReadWholeFile(files, TRAWLBEAM_SKIN)).wstring());
}

}  // namespace
}  // namespace tb
