// Starts and exits of the real program, told by the log that it writes.
#include "windows/LoopbackServer.h"
// Windows' sockets come before all else.
#include <gtest/gtest.h>

#include <fstream>
#include <thread>

#include "base/codepage.h"
#include "platform/win32/Win32Files.h"
#include "shell/helpers/DebugSwitch.h"
#include "sitedb/codec/Encryption.h"
#include "windows/Browser.h"
#include "windows/FlatMemory.h"
#include "windows/RunningProgram.h"
#include "windows/TrayMenu.h"

namespace tb {
namespace {

const Text Begun = "   " + Text(80, '-') + "\n   Starting " + TRAWLBEAM_VERSION + "\n";
const Text NoUpdate = "   Malicious Database Update Error: 5 Invalid procedure call or argument\n";
const Text Loaded = "   Malicious Database Load TBDB202611210900.BIN: OK\n" + NoUpdate;
// Without a service it makes a reference file of its own, which has no countries.
const Text NoReference =
    "   Missing Reference File: reference.bin\n"
    "   Error Retrieving Reference Data: 5 Invalid procedure call or argument\n";
const Text OwnReference = "   Error Load Reference Data: 91 Object variable or With block variable not set\n";
const Text FirstLoaded = NoReference + OwnReference + Loaded;
const Text SetupBegun = " D Controller StartActivity (Count = 1): Trawlbeam Setup\n";
const Text SetupEnded = "Controller EndActivity (Count = 0): Trawlbeam Setup\n";
const Text Shutdown = "   Trawlbeam Shutdown " TRAWLBEAM_VERSION "\n";

Text Ask(const Text& fields) { return Browser().Ask(fields); }

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
    EXPECT_EQ(program.Folder().Log(), FirstLoaded);
    for (const char* made : {"Log", "Data\\InProcess", "Data\\InProcess\\Error"}) {
        EXPECT_TRUE(std::filesystem::is_directory(folder / made)) << made;
    }
    EXPECT_EQ(program.Folder().Settings().find("AutoUpdate"), Text::npos) << "defaults are kept in memory";
    EXPECT_EQ(Ask("Check\thttps://phish.test/x"), RunningProgram::Blocked);
}

// The folder's program has other bytes in the place of those that it has once.
void ReplaceInProgram(const ProgramFolder& folder, const Text& found, const Text& with) {
    Win32Files files;
    const auto program = folder.Path() / "Trawlbeam.exe";
    Text bytes = ReadWholeFile(files, program);
    const size_t place = bytes.find(found);
    ASSERT_NE(place, Text::npos);
    bytes.replace(place, found.size(), with);
    const auto file = files.OpenForWriting(program);
    file->Write(bytes);
    file->Finish();
}

TEST(StartOfTheProgram, WithoutDefaultsAndServiceItRunsOn) {
    const auto folder = std::make_shared<ProgramFolder>();
    // A port where no service of this machine answers. The compiler may keep the address in pieces of eight bytes; this
    // is one of them.
    ReplaceInProgram(*folder, "?}:8765/", "?}:0001/");
    std::filesystem::create_directory(folder->Path() / "Log");
    std::filesystem::remove(folder->Path() / "Data" / "defaults.bin");
    const RunningProgram program(folder);
    EXPECT_EQ(folder->Log(), Begun +
                                 "   Missing Defaults File: defaults.bin\n"
                                 "   Error retrieving file head from defaults.bin\n" +
                                 FirstLoaded);
    EXPECT_EQ(Ask("Check\thttps://phish.test/x"), RunningProgram::Blocked);
}

// The answers of a service that has come to life.
Text LateAnswer(const Text& request, const Text& server) {
    const auto group = [&](const Text& name) {
        return "<E NAME='" + name + "'><Server WEIGHT='100' ACTIVE='Y'>" + server + "</Server></E>";
    };
    Text body;
    if (request.find("/defaults.bin") != Text::npos) {
        body = "<D><G NAME='SERVERS'>" + group("EVILDBSVR") + group("ReferenceSVR") + "</G></D>";
    } else if (request.find("/reference.bin") != Text::npos) {
        body = "<B><CATEGORIES><C ID='3' NAME='Third'/></CATEGORIES><SUBMISSIONS/><DISPOSITIONS/><COUNTRIES/></B>";
    } else if (request.find("/MalDB.aspx") != Text::npos) {
        body = "209911220000\n1\n+\thttp://late.test\t3\td";
    } else {
        return "HTTP/1.1 404 None\r\nContent-Length: 0\r\n\r\n";
    }
    body = EncryptStringChk(body);
    const Text head = "HTTP/1.1 200 OK\r\nLast-Modified: Sat, 21 Nov 2026 08:49:37 GMT\r\nContent-Length: " +
                      std::to_string(body.size()) + "\r\n\r\n";
    return request.rfind("HEAD", 0) == 0 ? head : head + body;
}

TEST(StartOfTheProgram, WithoutAServiceIsMadeGoodWhenThereIsOne) {
    std::atomic<bool> isAlive{false};
    Text address;
    // The port's digits are as many as those in the program. A connection is closed without an answer at first.
    const LoopbackServer server(
        [&](const LoopbackServer::Connection& connection, const Text& request) {
            if (isAlive) connection.Send(LateAnswer(request, address));
        },
        2000, 9999);
    address = server.Url("");
    const auto folder = std::make_shared<ProgramFolder>();
    ReplaceInProgram(*folder, "?}:8765/", "?}:" + std::to_string(server.Port()) + "/");
    std::filesystem::remove_all(folder->Path() / "Data");
    std::filesystem::create_directory(folder->Path() / "Data");
    folder->WriteSetting("TIMERS", "EVILDB_INTERVAL", "4");
    const RunningProgram program(folder);
    EXPECT_EQ(Ask("Check\thttp://late.test/x"), "OK");
    isAlive = true;
    // A first cycle that came too early for it is followed by a pause of a minute.
    EXPECT_TRUE(Eventually([] { return Ask("Check\thttp://late.test/x") == "Validated: d  (Category: Third)"; }))
        << folder->Log();
    EXPECT_NE(program.Log().find("   defaults.bin has come: updating\n   reference.bin has come\n"), Text::npos);
}

TEST(StartOfTheProgram, TheSecondTimeItTellsThatItStarts) {
    const auto folder = std::make_shared<ProgramFolder>();
    {
        const RunningProgram first(folder);
        EXPECT_EQ(RunningProgram::ExitThroughTray(true), 0U);
        EXPECT_EQ(first.WaitForEnd(), 0U);
    }
    EXPECT_EQ(folder->Log(), FirstLoaded + Shutdown);
    const RunningProgram second(folder);
    EXPECT_EQ(folder->Log(), FirstLoaded + Shutdown + Begun + OwnReference + Loaded);
}

TEST(StartOfTheProgram, InDebugModeItTellsEachStep) {
    const auto folder = std::make_shared<ProgramFolder>();
    folder->WriteSetting("Main", DebugSwitch(), "1");
    std::filesystem::create_directory(folder->Path() / "Log");
    RunningProgram program(folder, SetupEnded);
    Text log = WithoutSession(folder->Log());
    // The submission timer has a phase of its own in each run: 60 to 70 seconds.
    const size_t phase = log.find("Submission Timer 6");
    ASSERT_NE(phase, Text::npos) << log;
    log.replace(phase + 17, log.find(" seconds", phase) - phase - 17, "N");
    EXPECT_EQ(log, Begun + " D Trawlbeam.ini initialized\n" + SetupBegun + NoReference + OwnReference +
                       "   Malicious Database Load TBDB202611210900.BIN: 2\n" + NoUpdate +
                       " D Submission Timer N seconds\n"
                       " D EvilDB Timer 60 seconds\n"
                       " D FreeMem Timer 1800 seconds\n"
                       " D " +
                       SetupEnded);
    const HWND diagnostics = FindWindowA(NormalClasses.Window, "Trawlbeam Controller Debug");
    EXPECT_TRUE(IsWindowVisible(diagnostics));
    // Closing it by its frame does not end the program.
    SendMessageA(diagnostics, WM_CLOSE, 0, 0);
    EXPECT_EQ(Ask("Check\thttps://phish.test"), RunningProgram::Blocked);
}

// In debug mode. The settings are gone before the last line, which is therefore written in any mode.
Text StopAt(const Text& line) { return " D " + line + "\n D Trawlbeam AllDone\n D " + SetupEnded; }

// It waits for the first to go, in steps of five seconds; here the first goes in one of these, and in its place another
// folder's program holds the channel.
TEST(StartOfTheProgram, TheSecondInstanceWaitsWakesAndEnds) {
    const auto woken = std::make_shared<ProgramFolder>();
    woken->WriteSetting("Main", DebugSwitch(), "1");
    const ProgramFolder folder;
    std::filesystem::create_directory(folder.Path() / "Log");
    const auto program = folder.Path() / "Trawlbeam.exe";
    const Text alone = Begun + FirstLoaded;
    const Text waiting = alone + Begun + " D Trawlbeam.ini initialized\n" + SetupBegun +
                         "   Trawlbeam CheckNameAndPreviousInstance - App.PrevInstance TRUE\n";
    const auto log = [&folder] { return WithoutSession(folder.Log()); };
    const auto step = [](int count) {
        return "   Trawlbeam Sleeping while App.PrevInstance (" + std::to_string(count) + ")\n";
    };
    RunningProgram other(woken, SetupEnded);
    {
        auto first = std::make_unique<ProgramProcess>(program);
        ASSERT_TRUE(Eventually([&] { return folder.Log() == alone; })) << folder.Log();
        folder.WriteSetting("Main", DebugSwitch(), "1");
        const ProgramProcess second(program);
        ASSERT_TRUE(Eventually([&] { return log().find(step(0)) != Text::npos; })) << log();
        first.reset();
        EXPECT_EQ(second.WaitForEnd(), 0U);
    }
    Text steps;
    for (int count = 0; log().find(step(count)) != Text::npos; ++count) steps += step(count);
    EXPECT_EQ(log(), waiting + steps + "   Trawlbeam CheckNameAndPreviousInstance - App.PrevInstance, send TBWAKEUP\n" +
                         StopAt("CheckNameAndPrevInstance TRUE, exiting"));
    EXPECT_EQ(WithoutSession(other.Log()), " D There is no window frmTrawlMain\n");
}

// The strings of the resources 96, of the skin's range, and 101, of the agent's number, as the program file has them:
// each behind its length, with empty ones between.
Text FirstStrings(const Text& range, const Text& agent) {
    const auto counted = [](const Text& text) { return static_cast<char>(text.size()) + text; };
    Text wide;
    for (const char character : counted(range) + Text(4, '\0') + counted(agent)) wide += {character, '\0'};
    return wide;
}

// A folder with a log, whose program has other strings.
void ReplaceStrings(const ProgramFolder& folder, const Text& range, const Text& agent) {
    ReplaceInProgram(folder, FirstStrings("256-296", "1"), FirstStrings(range, agent));
    std::filesystem::create_directory(folder.Path() / "Log");
}

TEST(StartOfTheProgram, StopsWithoutASkin) {
    const OnlyProgram only;
    const ProgramFolder folder;
    ReplaceStrings(folder, "256-29x", "1");
    EXPECT_EQ(ProgramProcess(folder.Path() / "Trawlbeam.exe").WaitForEnd(), 0U);
    EXPECT_EQ(folder.Log(), Begun + "   Error Read Skin XML: Type mismatch\n   ReadSkinXML Failure\n");
}

// The program shows a message box and waits for the user, who presses that button.
void Press(const ProgramProcess& program, int button, const Text& text = {}) {
    HWND box = nullptr;
    ASSERT_TRUE(Eventually([&] {
        box = FindWindowOf(program.Id(), "#32770", "Trawlbeam");
        char shown[1024] = "";
        GetWindowTextA(GetDlgItem(box, 0xFFFF), shown, sizeof shown);
        return box != nullptr && Text(shown).find(text) != Text::npos;
    })) << text;
    EXPECT_EQ(program.WaitForEnd(0), static_cast<DWORD>(STILL_ACTIVE)) << "it waits for the user";
    PostMessageA(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
}

// The status with which it ends behind its message.
DWORD EndAfterItsMessage(const ProgramFolder& folder) {
    const ProgramProcess program(folder.Path() / "Trawlbeam.exe");
    Press(program, IDOK);
    return program.WaitForEnd();
}

TEST(StartOfTheProgram, AnUnexpectedErrorIsShownAndEndsIt) {
    const OnlyProgram only;
    const Text error = "   Trawlbeam error: 13 Type mismatch\n";
    const ProgramFolder first;
    ReplaceStrings(first, "256-296", "x");
    EXPECT_EQ(EndAfterItsMessage(first), 1U);
    EXPECT_EQ(first.Log(), error) << "the agent's number comes before all else";
    const ProgramFolder later;
    later.WriteSetting("Main", "BackColor", "no number");
    std::filesystem::create_directory(later.Path() / "Log");
    EXPECT_EQ(EndAfterItsMessage(later), 1U);
    EXPECT_EQ(later.Log(), Begun + error);
}

TEST(StartOfTheProgram, ADataFileThatDoesNotLoadStopsIt) {
    const OnlyProgram only;
    const ProgramFolder defaults;
    std::filesystem::create_directory(defaults.Path() / "Log");
    defaults.WriteData("defaults.bin", "no frame");
    EXPECT_EQ(ProgramProcess(defaults.Path() / "Trawlbeam.exe").WaitForEnd(), 0U);
    const Text noFrame = "   Error ChkEncryptString: 5 Invalid procedure call or argument\n";
    EXPECT_EQ(defaults.Log(), Begun + noFrame + "   Load defaults format error\n   CheckLoadDefaults TRUE, exiting\n");
    const ProgramFolder reference;
    std::filesystem::create_directory(reference.Path() / "Log");
    reference.WriteSetting("Main", DebugSwitch(), "1");
    reference.WriteData("reference.bin", "no frame");
    EXPECT_EQ(EndAfterItsMessage(reference), 0U);
    EXPECT_EQ(WithoutSession(reference.Log()),
              Begun + " D Trawlbeam.ini initialized\n" + SetupBegun + noFrame +
                  "   Load reference data format error\n   Error Load Reference Data: 0 \n"
                  "   Error TrawlMain: LoadReferenceData 0 \n" +
                  StopAt("CheckLoadReferenceData TRUE, exiting"));
}

// What gates of the start say and do, each in a folder of its own: how it is prepared, what the user answers, and the
// lines behind the first two of the start, up to those of the reference data or the end.
TEST(GatesOfTheProgram, HealWhatIsWrongOrStop) {
    using Folder = ProgramFolder;
    const auto defaults = [](const Text& versions) {
        return [versions](const Folder& folder) {
            folder.WriteData("defaults.bin", EncryptStringChk("<D><G NAME='MAIN'>" + versions + "</G></D>"));
        };
    };
    const auto expired = defaults("<E NAME='EXPIREVER'>9.0.0</E>");
    const auto warned = defaults("<E NAME='WARNVER'>9.0</E><E NAME='EXPIREVER'></E>");
    const auto pending = [](const Folder& folder) {
        std::filesystem::create_directory(folder.Path() / "Updates");
        std::ofstream(folder.Path() / "Updates" / "updates.xml") << "<U VERSION='1'/>";
    };
    const auto incomplete = [](const Folder& folder) {
        for (const char* name : {"tbDTab6.ocx", "MBListEx.ocx", "tbSender.dll", "tbBHOCfg.dll", "tbBHBridge.dll",
                                 "TrawlbeamHelper.dll", "tbUpdater.exe", "Trawlbeam.chm"}) {
            std::filesystem::remove(folder.Path() / name);
        }
    };
    struct Button {
        int Pressed;
        const char* Text;
    };
    const Button yes{IDYES, "Install updates?"}, no{IDNO, "Install updates?"};
    const Button refused{IDOK, "Trawlbeam cannot continue until pending updates are installed"};
    const Text asked = "   There are updates waiting to install, asking user to install.\n";
    const Text newer = "   IsVersionNewerThan - ExpireVer: 9.0.0 " TRAWLBEAM_VERSION "\n";
    struct Case {
        const char* Name;
        std::vector<std::function<void(const Folder&)>> Prepare;
        std::vector<Button> Answers;
        Text Lines;
        bool Runs;
    };
    const Case cases[] = {
        {"incomplete",
         {incomplete},
         {},
         "   Missing required components, set NeedToUpdate: Trawlbeam.chm, tbUpdater.exe, MBListEx.ocx, tbSender.dll, "
         "tbDTab6.ocx, TrawlbeamHelper.dll, tbBHOCfg.dll, tbBHBridge.dll\n",
         true},
        {"incomplete with updates",
         {incomplete, pending},
         {no, refused},
         asked + "   Missing required components and updates pending, exiting...\n",
         false},
        {"expired", {expired}, {}, newer + "   Expired version, set NeedToUpdate\n", true},
        {"expired with updates",
         {expired, pending},
         {no, refused},
         asked + newer + "   Expired version and pending updates to install, exiting...\n",
         false},
        {"warned, Yes",
         {warned},
         {{IDYES, "is out of date and should be upgraded."}},
         "   IsVersionNewerThan - WarnVer: 9.0 " TRAWLBEAM_VERSION "\n   Warn version, set NeedToUpdate\n",
         true},
        {"updates, No", {pending}, {no}, asked, true},
        {"updates, Yes, without updater",
         {incomplete, pending},
         {yes, {IDOK, "Trawlbeam tbUpdater.exe updater program did not start."}, refused},
         asked + "   Check install pending updates, launching updater (CheckInstallPendingUpdates)\n"
                 "   Launching Trawlbeam updater program (LaunchUpdater): Trawlbeam.exe\n"
                 "   Trawlbeam tbUpdater.exe updater program did not start (0), PATH\\tbUpdater.exe\n"
                 "   Missing required components and updates pending, exiting...\n",
         false},
    };
    const OnlyProgram only;
    for (const Case& one : cases) {
        SCOPED_TRACE(one.Name);
        const Folder folder;
        std::filesystem::create_directory(folder.Path() / "Log");
        for (const auto& prepare : one.Prepare) prepare(folder);
        const ProgramProcess program(folder.Path() / "Trawlbeam.exe");
        for (const Button& answer : one.Answers) Press(program, answer.Pressed, answer.Text);
        const Text expected = Begun + ReplaceAll(one.Lines, "PATH", PathText(folder.Path())) +
                              (one.Runs ? FirstLoaded : " D " + SetupEnded);
        EXPECT_TRUE(Eventually([&] { return folder.Log().size() >= expected.size(); }));
        EXPECT_EQ(program.WaitForEnd(one.Runs ? 0 : DeadlineMs), one.Runs ? static_cast<DWORD>(STILL_ACTIVE) : 0U);
        EXPECT_EQ(folder.Log(), expected);
    }
}

TEST(GatesOfTheProgram, ARenamedProgramOnlyTellsHowToRenameIt) {
    const OnlyProgram only;
    const ProgramFolder folder;
    std::filesystem::create_directory(folder.Path() / "Log");
    std::filesystem::rename(folder.Path() / "Trawlbeam.exe", folder.Path() / "x.exe");
    const ProgramProcess program(folder.Path() / "x.exe");
    Press(program, IDOK, "'Trawlbeam.exe' has been renamed to: 'x.exe'.");
    EXPECT_EQ(program.WaitForEnd(), 0U);
    EXPECT_EQ(folder.Log(),
              Begun + "   Trawlbeam 'Trawlbeam.exe' has been renamed to: 'x.exe', exiting\n D " + SetupEnded);
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

// As the system ends it; false where the program forbids that.
bool EndSession() {
    const HWND controller = FindWindowA(NormalClasses.Window, "Trawlbeam Controller");
    if (controller == nullptr || SendMessageA(controller, WM_QUERYENDSESSION, 0, 0) != TRUE) return false;
    SendMessageA(controller, WM_ENDSESSION, TRUE, 0);
    return true;
}

TEST(ExitOfTheProgram, NeitherAsksNorWaitsAtTheEndOfTheSession) {
    RunningProgram program;
    SendMessageA(program.Top(), WM_CLOSE, 0, 0);
    EXPECT_EQ(Ask("Check\thttps://phish.test"), RunningProgram::Blocked) << "the tray's window cannot be closed";
    EXPECT_TRUE(EndSession());
    EXPECT_EQ(program.WaitForEnd(), 0U);
    EXPECT_NE(program.Folder().Settings().find("AutoUpdate"), Text::npos);
}

TEST(ExitOfTheProgram, EndsWithTheSessionThoughItsMenuIsOpen) {
    RunningProgram program;
    PostMessageA(program.Top(), TrayIconMessage, TrayIconId, WM_RBUTTONDOWN);
    ASSERT_TRUE(Eventually([&] { return OpenMenu(program.ProcessId()) != nullptr; }));
    EXPECT_TRUE(EndSession());
    EXPECT_EQ(program.WaitForEnd(), 0U);
}

// The request goes on in a program that has dropped its list.
TEST(ExitOfTheProgram, EndsThoughARequestWaitsForItsMessageToBeClosed) {
    for (const bool session : {true, false}) {
        RunningProgram program;
        Text reply = "not yet";
        std::thread asker([&] { reply = Ask("Nope\tx"); });
        EXPECT_TRUE(Eventually([&] { return FindWindowOf(program.ProcessId(), "#32770") != nullptr; }));
        if (session) {
            EXPECT_TRUE(EndSession());
        } else {
            EXPECT_EQ(RunningProgram::ExitThroughTray(true), 0U);
        }
        EXPECT_EQ(program.WaitForEnd(), 0U) << session;
        asker.join();
        EXPECT_EQ(reply, "") << session;
    }
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
    void Tick(int times) {
        const HWND controller = FindWindowA(NormalClasses.Window, "Trawlbeam Controller");
        for (int count = 0; count < times; ++count) {
            for (const WPARAM timer : Timers) PostMessageA(controller, WM_TIMER, timer, 0);
            SendMessageA(controller, WM_NULL, 0, 0);
        }
    }
    bool OpenAndCloseMenu(int times) {
        const DWORD id = m_Program.ProcessId();
        for (int count = 0; count < times; ++count) {
            PostMessageA(m_Program.Top(), TrayIconMessage, TrayIconId, WM_RBUTTONDOWN);
            if (!Eventually([&] { return OpenMenu(id) != nullptr; })) return false;
            PostMessageA(m_Program.Top(), WM_KEYDOWN, VK_ESCAPE, 0);
            if (!Eventually([&] { return OpenMenu(id) == nullptr; })) return false;
        }
        return true;
    }

    RunningProgram m_Program{Folder()};
};

TEST_F(LifeOfTheProgram, LeavesMemoryFlat) {
    Tick(100);
    ASSERT_TRUE(OpenAndCloseMenu(20));
    const FlatMemory memory(m_Program.Process());
    Tick(1000);
    ASSERT_TRUE(OpenAndCloseMenu(200));
    memory.Expect("1000 timer cycles, 200 menu openings");
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
    FreeLibrary(file);
    EXPECT_GT(pieces, 1);
    Win32Files files;
    EXPECT_EQ(ReadWholeFile(files, BuiltProgram("Trawlbeam.exe")).find(DebugSwitch()), Text::npos)
        << "the debug switch is told to operators only";
    const Text source = ReadWholeFile(files, TRAWLBEAM_SKIN);
    std::wstring expected(source.size(), L'\0');
    expected.resize(static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, source.data(), static_cast<int>(source.size()),
                                                            expected.data(), static_cast<int>(expected.size()))));
    EXPECT_EQ(skin, expected);
}

}  // namespace
}  // namespace tb
