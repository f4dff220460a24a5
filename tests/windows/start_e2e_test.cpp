// Starts and exits of the real program, told by the log that it writes.
#include <windows.h>

#include <gtest/gtest.h>
#include <psapi.h>

#include "components/tbBHBridge/ChannelClient.h"
#include "platform/TrayIcon.h"
#include "platform/win32/ReplyWindow.h"
#include "platform/win32/Win32Files.h"
#include "shell/helpers/DebugSwitch.h"
#include "windows/RunningProgram.h"

namespace tb {
namespace {

const Text Begun = "   " + Text(80, '-') + "\n   Starting " + TRAWLBEAM_VERSION + "\n";
const Text Loaded = "   Malicious Database Load TBDB202611210900.BIN: OK\n";
const Text Shutdown = "   Trawlbeam Shutdown " TRAWLBEAM_VERSION "\n";

Text Ask(const Text& fields) {
    Win32WindowText windows;
    ChannelClient client(windows);
    ReplyWindow reply;
    if (!client.Locate()) return "(no channel)";
    client.Send(reply.Window(), fields);
    return reply.Take().value_or("(none)");
}

// In debug mode each line has the number of the run behind its mark; it is taken out.
Text WithoutSession(const Text& log) {
    Text lines;
    for (const Text& line : Split(log, '\n')) {
        if (line.empty()) continue;
        const size_t blank = line.find_first_not_of("0123456789", 3);
        const bool numbered = blank != Text::npos && blank > 3 && line[blank] == ' ';
        lines += (numbered ? line.substr(0, 3) + line.substr(blank + 1) : line) + "\n";
    }
    return lines;
}

TEST(StartOfTheProgram, TheFirstTimeItLosesItsLinesAndMakesItsFolders) {
    RunningProgram program;
    const std::filesystem::path folder = program.Folder().Path();
    EXPECT_EQ(program.Folder().Log(), Loaded);
    for (const char* made : {"Log", "Data\\InProcess", "Data\\InProcess\\Error"}) {
        EXPECT_TRUE(std::filesystem::is_directory(folder / made)) << made;
    }
    EXPECT_EQ(program.Folder().Settings().find("AutoUpdate"), Text::npos) << "defaults are kept in memory";
    EXPECT_EQ(Ask("Check\thttps://phish.test/x"), RunningProgram::Blocked);
}

TEST(StartOfTheProgram, TheSecondTimeItTellsThatItStarts) {
    const auto folder = std::make_shared<ProgramFolder>();
    {
        const RunningProgram first(folder);
        EXPECT_EQ(RunningProgram::ExitThroughTray(true), 0U);
        EXPECT_EQ(first.WaitForEnd(), 0U);
    }
    EXPECT_EQ(folder->Log(), Loaded + Shutdown);
    const RunningProgram second(folder);
    EXPECT_EQ(folder->Log(), Loaded + Shutdown + Begun + Loaded);
    const auto names = Win32Files().List(folder->Path() / "Log");
    ASSERT_EQ(names.size(), 1U);
    SYSTEMTIME now{};
    GetLocalTime(&now);
    const int month = now.wYear * 100 + now.wMonth;
    EXPECT_EQ(names[0], "Trawlbeam" + std::to_string(month) + ".log");
    Win32Files files;
    const Text line = ReadWholeFile(files, folder->Path() / "Log" / names[0]).substr(0, 19);
    EXPECT_EQ(FormatDateTime(ParseDate(line)), line);
}

TEST(StartOfTheProgram, InDebugModeItTellsEachStep) {
    const auto folder = std::make_shared<ProgramFolder>();
    folder->WriteSetting("Main", DebugSwitch(), "1");
    std::filesystem::create_directory(folder->Path() / "Log");
    RunningProgram program(folder);
    Text log = WithoutSession(folder->Log());
    // The submission timer has a phase of its own in each run: 60 to 70 seconds.
    const size_t phase = log.find("Submission Timer 6");
    ASSERT_NE(phase, Text::npos) << log;
    log.replace(phase + 17, log.find(" seconds", phase) - phase - 17, "N");
    EXPECT_EQ(log, Begun +
                       " D Trawlbeam.ini initialized\n"
                       " D Controller StartActivity (Count = 1): Trawlbeam Setup\n"
                       "   Malicious Database Load TBDB202611210900.BIN: 2\n"
                       " D Submission Timer N seconds\n"
                       " D EvilDB Timer 60 seconds\n"
                       " D FreeMem Timer 1800 seconds\n"
                       " D Controller EndActivity (Count = 0): Trawlbeam Setup\n");
    const HWND diagnostics = FindWindowA(NormalClasses.Window, "Trawlbeam Controller Debug");
    EXPECT_TRUE(IsWindowVisible(diagnostics));
    // Closing it by its frame does not end the program.
    SendMessageA(diagnostics, WM_CLOSE, 0, 0);
    EXPECT_EQ(Ask("Check\thttps://phish.test"), RunningProgram::Blocked);
}

// It waits for the first to go, in steps of five seconds; here the first goes at once, and in its place another
// folder's program holds the channel.
TEST(StartOfTheProgram, TheSecondInstanceWaitsWakesAndEnds) {
    const auto woken = std::make_shared<ProgramFolder>();
    woken->WriteSetting("Main", DebugSwitch(), "1");
    const ProgramFolder folder;
    std::filesystem::create_directory(folder.Path() / "Log");
    const auto program = folder.Path() / "Trawlbeam.exe";
    const Text waiting = Begun +
                         "   Trawlbeam CheckNameAndPreviousInstance - App.PrevInstance TRUE\n"
                         "   Trawlbeam Sleeping while App.PrevInstance (0)\n";
    RunningProgram other(woken);
    {
        auto first = std::make_unique<ProgramProcess>(program);
        ASSERT_TRUE(Eventually([&] { return folder.Log() == Begun + Loaded; })) << folder.Log();
        const ProgramProcess second(program);
        ASSERT_TRUE(Eventually([&] { return folder.Log() == Begun + Loaded + waiting; })) << folder.Log();
        first.reset();
        EXPECT_EQ(second.WaitForEnd(30000), 0U);
    }
    EXPECT_EQ(folder.Log(), Begun + Loaded + waiting +
                                "   Trawlbeam CheckNameAndPreviousInstance - App.PrevInstance, send TBWAKEUP\n"
                                " D Controller EndActivity (Count = 0): Trawlbeam Setup\n");
    EXPECT_EQ(WithoutSession(other.Log()), " D There is no window frmMain\n");
}

TEST(StartOfTheProgram, AnUnexpectedErrorIsShownAndEndsIt) {
    const OnlyProgram only;
    const ProgramFolder folder;
    folder.WriteSetting("Main", "BackColor", "no number");
    std::filesystem::create_directory(folder.Path() / "Log");
    const ProgramProcess program(folder.Path() / "Trawlbeam.exe");
    HWND box = nullptr;
    ASSERT_TRUE(Eventually([&] { return (box = FindWindowA("#32770", "Trawlbeam")) != nullptr; }));
    DWORD owner = 0;
    GetWindowThreadProcessId(box, &owner);
    EXPECT_EQ(owner, program.Id());
    EXPECT_EQ(program.WaitForEnd(0), static_cast<DWORD>(STILL_ACTIVE)) << "it waits for the user";
    PostMessageA(box, WM_COMMAND, IDOK, 0);
    EXPECT_EQ(program.WaitForEnd(), 1U);
    EXPECT_EQ(folder.Log(), Begun + "   Trawlbeam error: 13 Type mismatch\n");
}

TEST(ExitOfTheProgram, AsksAndWithNoGoesOn) {
    RunningProgram program;
    const Text blocked = Text("   Checking: https://phish.test (") + RunningProgram::Blocked + ")\n";
    for (int times = 0; times < 2; ++times) {
        EXPECT_EQ(RunningProgram::ExitThroughTray(false), 0U);
        EXPECT_EQ(Ask("Check\thttps://phish.test"), RunningProgram::Blocked);
    }
    const Text refused = Shutdown + blocked + Shutdown + blocked;
    EXPECT_EQ(program.Log(), refused);
    EXPECT_EQ(RunningProgram::ExitThroughTray(true), 0U);
    EXPECT_EQ(program.WaitForEnd(), 0U);
    EXPECT_EQ(program.Top(), nullptr);
    EXPECT_EQ(program.Log(), refused + Shutdown);
    EXPECT_NE(program.Folder().Settings().find("<ELEMENT NAME='AutoUpdate'>1</ELEMENT>"), Text::npos);
}

TEST(ExitOfTheProgram, NeitherAsksNorWaitsAtTheEndOfTheSession) {
    RunningProgram program;
    SendMessageA(program.Top(), WM_CLOSE, 0, 0);
    EXPECT_EQ(Ask("Check\thttps://phish.test"), RunningProgram::Blocked) << "the tray's window cannot be closed";
    const HWND controller = FindWindowA(NormalClasses.Window, "Trawlbeam Controller");
    ASSERT_NE(controller, nullptr);
    EXPECT_EQ(SendMessageA(controller, WM_QUERYENDSESSION, 0, 0), TRUE);
    SendMessageA(controller, WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(program.WaitForEnd(), 0U);
    EXPECT_NE(program.Folder().Settings().find("AutoUpdate"), Text::npos);
}

class LifeOfTheProgram : public testing::Test {
protected:
    // The program's timers by the numbers of their messages.
    static constexpr WPARAM Timers[] = {1, 2};

    static std::shared_ptr<ProgramFolder> Folder() {
        auto folder = std::make_shared<ProgramFolder>();
        folder->WriteSetting("TIMERS", "EVILDB_INTERVAL", "0");
        return folder;
    }
    HWND Menu() {
        for (HWND menu = nullptr; (menu = FindWindowExA(nullptr, menu, "#32768", nullptr)) != nullptr;) {
            DWORD owner = 0;
            GetWindowThreadProcessId(menu, &owner);
            if (owner == m_Program.ProcessId() && IsWindowVisible(menu)) return menu;
        }
        return nullptr;
    }
    void Tick(int times) {
        const HWND controller = FindWindowA(NormalClasses.Window, "Trawlbeam Controller");
        for (int count = 0; count < times; ++count) {
            for (const WPARAM timer : Timers) PostMessageA(controller, WM_TIMER, timer, 0);
            SendMessageA(controller, WM_NULL, 0, 0);
        }
    }
    bool OpenMenu(int times) {
        for (int count = 0; count < times; ++count) {
            PostMessageA(m_Program.Top(), TrayIconMessage, TrayIconId, WM_RBUTTONDOWN);
            if (!Eventually([this] { return Menu() != nullptr; })) return false;
            PostMessageA(m_Program.Top(), WM_KEYDOWN, VK_ESCAPE, 0);
            if (!Eventually([this] { return Menu() == nullptr; })) return false;
        }
        return true;
    }
    PROCESS_MEMORY_COUNTERS Memory() const {
        PROCESS_MEMORY_COUNTERS counters{};
        GetProcessMemoryInfo(m_Program.Process(), &counters, sizeof counters);
        return counters;
    }

    RunningProgram m_Program{Folder()};
};

TEST_F(LifeOfTheProgram, LeavesMemoryFlat) {
    constexpr int Cycles = 1000;
    constexpr int Openings = 200;
    constexpr SIZE_T Allowed = 1 << 20;
    Tick(Cycles / 10);
    ASSERT_TRUE(OpenMenu(Openings / 10));
    const PROCESS_MEMORY_COUNTERS before = Memory();
    Tick(Cycles);
    ASSERT_TRUE(OpenMenu(Openings));
    const PROCESS_MEMORY_COUNTERS after = Memory();
    std::printf("%d cycles, %d menu openings: private %zu -> %zu, working set %zu -> %zu bytes\n", Cycles, Openings,
                before.PagefileUsage, after.PagefileUsage, before.WorkingSetSize, after.WorkingSetSize);
    ASSERT_GT(before.WorkingSetSize, 0U);
    EXPECT_LT(after.PagefileUsage, before.PagefileUsage + Allowed);
    EXPECT_LT(after.WorkingSetSize, before.WorkingSetSize + Allowed);
}

// The program file holds the deployment's skin, cut into string resources, as one text in the code page.
TEST(ProgramFile, HoldsTheSkinOfItsDeployment) {
    const HMODULE file = LoadLibraryExW(BuiltProgram("Trawlbeam.exe").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(file, nullptr);
    std::wstring skin;
    int pieces = 0;
    for (UINT id = 256; id <= 296; ++id) {
        wchar_t room[5000];
        const int length = LoadStringW(file, id, room, 5000);
        EXPECT_LT(length, 4000);
        skin.append(room, static_cast<size_t>(length));
        pieces += length > 0 ? 1 : 0;
    }
    char text[16] = "";
    LoadStringA(file, 96, text, sizeof text);
    EXPECT_STREQ(text, "256-296");
    LoadStringA(file, 101, text, sizeof text);
    EXPECT_STREQ(text, "1");
    FreeLibrary(file);
    EXPECT_GT(pieces, 1);
    Win32Files files;
    const Text source = ReadWholeFile(files, TRAWLBEAM_SKIN);
    std::wstring expected(source.size(), L'\0');
    expected.resize(static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, source.data(), static_cast<int>(source.size()),
                                                            expected.data(), static_cast<int>(expected.size()))));
    EXPECT_EQ(skin, expected);
}

}  // namespace
}  // namespace tb
