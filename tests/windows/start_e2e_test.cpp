// Starts of the real program, told by the log that it writes.
#include "windows/LoopbackServer.h"
// Windows' sockets come before all else.
#include <gtest/gtest.h>

#include <fstream>

#include "base/codepage.h"
#include "platform/win32/Win32Files.h"
#include "shell/helpers/DebugSwitch.h"
#include "sitedb/codec/Encryption.h"
#include "windows/Browser.h"
#include "windows/RunningProgram.h"

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
const Text Blocked = RunningProgram::Blocked;

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

// The first start has no folder for its first lines; the second tells all. What was allowed holds, whatever characters
// stood in one of the URLs.
TEST(StartOfTheProgram, TheSecondTimeItKnowsTheFirst) {
    const auto folder = std::make_shared<ProgramFolder>();
    // No second cycle writes a line in between.
    folder->WriteSetting("TIMERS", "EVILDB_INTERVAL", "3600");
    const auto checked = [](const Text& url, const Text& reply) {
        return "   Checking: " + url + " (" + reply + ")\n";
    };
    const auto ask = [&](const char* url, const Text& reply) {
        EXPECT_EQ(Ask(Text("Check\t") + url), reply);
        return checked(url, reply);
    };
    Text lines = FirstLoaded;
    {
        const RunningProgram program(folder);
        EXPECT_EQ(folder->Log(), lines);
        for (const char* made : {"Log", "Data\\InProcess", "Data\\InProcess\\Error"}) {
            EXPECT_TRUE(std::filesystem::is_directory(folder->Path() / made)) << made;
        }
        EXPECT_EQ(folder->Settings().find("AutoUpdate"), Text::npos) << "defaults are kept in memory";
        for (int times = 0; times < 2; ++times) {
            EXPECT_EQ(RunningProgram::ExitThroughTray(false), 0U);
            lines += Shutdown + ask("https://phish.test", Blocked);
        }
        EXPECT_EQ(folder->Log(), lines);
        for (const char* url : {"https://phish.test/", "http://evil.example/offer%3Cb%0D%0A&lt;"}) {
            EXPECT_EQ(Ask(Text("Allow\t") + url), "");
        }
        EXPECT_EQ(Ask("Check\thttps://phish.test/x"), "OK");
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

TEST(StartOfTheProgram, WithoutDefaultsAndServiceItRunsOnUntilThereIsOne) {
    std::atomic<bool> isAlive{false};
    Text address;
    // The port's digits are as many as those in the program; the compiler may keep the address in pieces of eight
    // bytes, of which this is one. A connection is closed without an answer at first.
    const LoopbackServer server(
        [&](const LoopbackServer::Connection& connection, const Text& request) {
            if (isAlive) connection.Send(LateAnswer(request, address));
        },
        2000, 9999);
    address = server.Url("");
    const auto folder = std::make_shared<ProgramFolder>();
    ReplaceInProgram(*folder, "?}:8765/", "?}:" + std::to_string(server.Port()) + "/");
    std::filesystem::create_directory(folder->Path() / "Log");
    std::filesystem::remove(folder->Path() / "Data" / "defaults.bin");
    folder->WriteSetting("TIMERS", "EVILDB_INTERVAL", "4");
    const RunningProgram program(folder);
    const Text missed = Begun +
                        "   Missing Defaults File: defaults.bin\n   Error retrieving file head from defaults.bin\n" +
                        NoReference;
    EXPECT_EQ(folder->Log().substr(0, missed.size()), missed);
    EXPECT_EQ(Ask("Check\thttps://phish.test/x"), Blocked);
    EXPECT_EQ(Ask("Check\thttp://late.test/x"), "OK");
    isAlive = true;
    // A first cycle that came too early for it is followed by a pause of a minute.
    EXPECT_TRUE(Eventually([] { return Ask("Check\thttp://late.test/x") == "Validated: d  (Category: Third)"; }))
        << folder->Log();
    EXPECT_NE(program.Log().find("   defaults.bin has come: updating\n   reference.bin has come\n"), Text::npos);
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
                       " D Submission Timer N seconds\n D EvilDB Timer 60 seconds\n D FreeMem Timer 1800 seconds\n D " +
                       SetupEnded);
    const HWND diagnostics = FindWindowW(L"ThunderRT6FormDC", L"Trawlbeam Controller Debug");
    EXPECT_TRUE(IsWindowVisible(diagnostics));
    // Closing it by its frame does not end the program.
    SendMessageW(diagnostics, WM_CLOSE, 0, 0);
    EXPECT_EQ(Ask("Check\thttps://phish.test"), Blocked);
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

// The program shows a message box with that text and waits for the user, who presses that button.
struct Answer {
    int Button;
    const wchar_t* Text;
};
void Press(const ProgramProcess& program, const Answer& answer) {
    HWND box = nullptr;
    ASSERT_TRUE(Eventually([&] {
        box = FindWindowOf(program.Id(), "#32770", "Trawlbeam");
        wchar_t shown[1024] = L"";
        GetWindowTextW(GetDlgItem(box, 0xFFFF), shown, 1024);
        return box != nullptr && std::wstring_view(shown).find(answer.Text) != std::wstring_view::npos;
    })) << FromWide(reinterpret_cast<const char16_t*>(answer.Text));
    EXPECT_EQ(program.WaitForEnd(0), static_cast<DWORD>(STILL_ACTIVE)) << "it waits for the user";
    PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(answer.Button), 0);
}

// What stops or heals a start, each in a folder of its own with a log: how it is prepared, what the user answers, the
// lines behind the first two of the start, and the status at its end.
TEST(GatesOfTheProgram, HealWhatIsWrongOrStop) {
    using Folder = ProgramFolder;
    constexpr DWORD Runs = STILL_ACTIVE;
    const auto replaceStrings = [](const Text& range, const Text& agent) {
        return [=](const Folder& folder) {
            ReplaceInProgram(folder, FirstStrings("256-296", "1"), FirstStrings(range, agent));
        };
    };
    const auto incomplete = [](const Folder& folder) {
        for (const char* name : {"tbDTab6.ocx", "MBListEx.ocx", "tbSender.dll", "tbBHOCfg.dll", "tbBHBridge.dll",
                                 "TrawlbeamHelper.dll", "tbUpdater.exe", "Trawlbeam.chm"}) {
            std::filesystem::remove(folder.Path() / name);
        }
    };
    struct Case {
        const char* Name;
        std::function<void(const Folder&)> Prepare;
        std::vector<Answer> Answers;
        Text Lines;
        DWORD Status;
        const char* Program = "Trawlbeam.exe";
    };
    const Case cases[] = {
        {"no skin",
         replaceStrings("256-29x", "1"),
         {},
         Begun + "   Error Read Skin XML: Type mismatch\n   ReadSkinXML Failure\n",
         0},
        {"an unexpected error, before all else",
         replaceStrings("256-296", "x"),
         {{IDOK, L"13 Type mismatch"}},
         "   Trawlbeam error: 13 Type mismatch\n",
         1},
        {"a data file that does not load",
         [](const Folder& folder) {
             folder.WriteSetting("Main", DebugSwitch(), "1");
             folder.WriteData("reference.bin", "no frame");
         },
         {{IDOK, L""}},
         Begun + " D Trawlbeam.ini initialized\n" + SetupBegun +
             "   Error ChkEncryptString: 5 Invalid procedure call or argument\n   Load reference data format error\n"
             "   Error Load Reference Data: 0 \n   Error TrawlMain: LoadReferenceData 0 \n" +
             StopAt("CheckLoadReferenceData TRUE, exiting"),
         0},
        {"incomplete",
         incomplete,
         {},
         Begun +
             "   Missing required components, set NeedToUpdate: Trawlbeam.chm, tbUpdater.exe, MBListEx.ocx, "
             "tbSender.dll, tbDTab6.ocx, TrawlbeamHelper.dll, tbBHOCfg.dll, tbBHBridge.dll\n" +
             FirstLoaded,
         Runs},
        {"updates, Yes, without updater",
         [&](const Folder& folder) {
             incomplete(folder);
             std::filesystem::create_directory(folder.Path() / "Updates");
             std::ofstream(folder.Path() / "Updates" / "updates.xml") << "<U VERSION='1'/>";
         },
         {{IDYES, L"Install updates?"},
          {IDOK, L"Trawlbeam tbUpdater.exe updater program did not start."},
          {IDOK, L"Trawlbeam cannot continue until pending updates are installed"}},
         Begun +
             "   There are updates waiting to install, asking user to install.\n"
             "   Check install pending updates, launching updater (CheckInstallPendingUpdates)\n"
             "   Launching Trawlbeam updater program (LaunchUpdater): Trawlbeam.exe\n"
             "   Trawlbeam tbUpdater.exe updater program did not start (0), PATH\\tbUpdater.exe\n"
             "   Missing required components and updates pending, exiting...\n D " +
             SetupEnded,
         0},
        {"renamed",
         [](const Folder& folder) {
             std::filesystem::rename(folder.Path() / "Trawlbeam.exe", folder.Path() / "x.exe");
         },
         {{IDOK, L"'Trawlbeam.exe' has been renamed to: 'x.exe'."}},
         Begun + "   Trawlbeam 'Trawlbeam.exe' has been renamed to: 'x.exe', exiting\n D " + SetupEnded,
         0,
         "x.exe"}};
    const OnlyProgram only;
    for (const Case& one : cases) {
        SCOPED_TRACE(one.Name);
        const Folder folder;
        std::filesystem::create_directory(folder.Path() / "Log");
        one.Prepare(folder);
        const ProgramProcess program(folder.Path() / one.Program);
        for (const Answer& answer : one.Answers) Press(program, answer);
        const Text expected = ReplaceAll(one.Lines, "PATH", PathText(folder.Path()));
        EXPECT_TRUE(Eventually([&] { return folder.Log().size() >= expected.size(); })) << folder.Log();
        EXPECT_EQ(program.WaitForEnd(one.Status == Runs ? 0 : DeadlineMs), one.Status);
        EXPECT_EQ(WithoutSession(folder.Log()), expected);
    }
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
