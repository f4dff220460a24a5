// The system that the program runs on, in memory: what the tests set up, and what the program did with it.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <utility>

#include "fakes/FakeFiles.h"
#include "shell/helpers/App.h"

namespace tb {

class FakeClock : public Clock {
public:
    Date Now() override { return Present; }
    void Pass(std::int64_t seconds) { Present = Present.PlusSeconds(seconds); }
    Date Present = Date(CivilDate{2026, 11, 21, 8, 9, 10});
};

class FakeRandom : public Random {
public:
    double Next() override {
        if (Coming.empty()) return Value;
        const double next = Coming.front();
        Coming.pop_front();
        return next;
    }
    double Value = 0.25;
    // What comes before it.
    std::deque<double> Coming;
};

class FakePump : public Pump {
public:
    void ProcessMessages() override {
        ++Pumped;
        if (OnPump) OnPump();
    }
    void Sleep(std::int32_t milliseconds) override { Slept += milliseconds; }
    int Pumped = 0;
    std::int64_t Slept = 0;
    std::function<void()> OnPump;
};

class FakeDialogs : public Dialogs {
public:
    std::int32_t ShowMessage(const Text& prompt, std::int32_t buttons, const Text& title) override {
        Shown.push_back(std::to_string(buttons) + "|" + title + "|" + prompt);
        // Once: what it does may show a message itself.
        if (const auto meanwhile = std::exchange(Meanwhile, nullptr)) meanwhile();
        return Answer;
    }
    void SoundMessage(std::int32_t icon) override { Sounds.push_back(icon); }
    std::vector<Text> Shown;
    std::vector<std::int32_t> Sounds;
    // Happens while the next message is open.
    std::function<void()> Meanwhile;
    std::int32_t Answer = 1;
};

class FakeResources : public Resources {
public:
    Text String(std::int32_t id) override { return Strings[id]; }
    Text Custom(const Text& name) override {
        const auto found = Customs.find(name);
        if (found == Customs.end()) throw RuntimeError(326, "Resource with identifier '" + name + "' not found");
        return found->second;
    }
    // What the fake windows decode as a picture in the colour of that number.
    Text Icon(std::int32_t id) override { return "32x32 " + std::to_string(id); }
    std::map<std::int32_t, Text> Strings{
        {101, "1"}, {96, "256-257"}, {256, "<SKIN URL='http://home.example/'>"}, {257, "</SKIN>"}};
    std::map<Text, Text> Customs{{"CLICK", "click"}, {"ALERT", "alert"}};
};

class FakeProcesses : public Processes {
public:
    std::filesystem::path Executable() override { return File; }
    bool IsPreviousInstance() override { return PreviousInstances > 0 && PreviousInstances-- > 0; }
    bool IsRunningBeside(const Text& fileName) override { return RunningBeside.count(fileName) > 0; }
    bool IsModuleLoaded(const Text& fileName) override { return UpperCase(fileName) == "TRAWLBEAM.EXE"; }
    std::uint32_t Start(const Text& commandLine) override {
        Started.push_back(commandLine);
        return StartedNumber;
    }
    std::uint32_t StartProgram(const std::filesystem::path& program, const Text& commandLine) override {
        Started.push_back(program.string() + ": " + commandLine);
        return StartedNumber;
    }
    std::uint32_t SetWorkingSetSize(std::int64_t minimum, std::int64_t maximum) override {
        Trims.push_back(std::to_string(minimum) + "-" + std::to_string(maximum));
        return TrimFailure;
    }
    Text SystemErrorText(std::uint32_t number) override { return "system error " + std::to_string(number); }
    [[noreturn]] void Exit(std::int32_t status) override { throw status; }
    std::filesystem::path File = "/app/Trawlbeam.exe";
    std::uint32_t StartedNumber = 77;
    // How often the question for another instance is answered with yes.
    int PreviousInstances = 0;
    std::set<Text> RunningBeside;
    std::uint32_t TrimFailure = 0;
    std::vector<Text> Started;
    std::vector<Text> Trims;
};

class FakeShell : public Shell {
public:
    bool Open(const Text& target) override {
        Opened.push_back(target);
        return true;
    }
    std::vector<Text> Opened;
};

class FakeFileVersions : public FileVersions {
public:
    std::optional<std::vector<Text>> Strings(const std::filesystem::path& path,
                                             const std::vector<Text>& names) override {
        const auto found = Versions.find(path);
        if (found == Versions.end()) return std::nullopt;
        std::vector<Text> strings;
        for (const Text& name : names) strings.push_back(found->second[name]);
        return strings;
    }
    // By file, the strings by name.
    std::map<std::filesystem::path, std::map<Text, Text>> Versions;
};

class FakeRegistry : public Registry {
public:
    bool KeyExists(RegistryRoot /*root*/, const Text& section) override { return Keys.count(UpperCase(section)) > 0; }
    bool CreateKey(RegistryRoot /*root*/, const Text& section) override {
        Keys[UpperCase(section)];
        return true;
    }
    bool DeleteKey(RegistryRoot /*root*/, const Text& section) override { return Keys.erase(UpperCase(section)) > 0; }
    std::optional<Text> ReadText(RegistryRoot /*root*/, const Text& section, const Text& name) override {
        const auto key = Keys.find(UpperCase(section));
        if (key == Keys.end() || key->second.count(UpperCase(name)) == 0) return std::nullopt;
        return key->second[UpperCase(name)];
    }
    bool WriteText(RegistryRoot /*root*/, const Text& section, const Text& name, const Text& value) override {
        Keys[UpperCase(section)][UpperCase(name)] = value;
        return true;
    }
    bool DeleteValue(RegistryRoot /*root*/, const Text& section, const Text& name) override {
        return Keys[UpperCase(section)].erase(UpperCase(name)) > 0;
    }
    std::vector<Text> ValueNames(RegistryRoot /*root*/, const Text& /*section*/) override { return {}; }
    std::vector<Text> SectionNames(RegistryRoot /*root*/, const Text& /*section*/) override { return {}; }
    std::map<Text, std::map<Text, Text>> Keys;
};

class FakeMachine : public Machine {
public:
    SystemVersion Version() override { return System; }
    std::uint32_t AnsiCodePage() override { return CodePageNumber; }
    Text WindowsFolder() override { return "C:\\windows"; }
    Text SystemFolder() override { return "C:\\windows\\system32\\"; }
    Text TempFolder() override { return "C:\\temp"; }
    Text ComputerName() override { return "COMPUTER"; }
    Text UserName() override { return "user"; }
    Text VolumeName() override { return "disk"; }
    DiskSpace Disk() override { return {5LL << 30, 9LL << 30}; }
    MemoryState Memory() override { return {300, 800, 1, 2, 3, 4}; }
    ScreenState Screen() override { return {1024, 768, 24, 15}; }
    std::int32_t Metric(std::int32_t number) override { return number * 10; }
    std::uint32_t LastErrorCode() override { return 5; }
    SystemVersion System{6, 1, 7601, 2};
    std::uint32_t CodePageNumber = 1252;
};

class FakeWindowText : public WindowText {
public:
    WindowHandle FindTopLevel(const Text& className, const Text& caption) override {
        const auto found = TopLevel.find(caption);
        if (found != TopLevel.end() && found->second == className) return 20;
        return caption == "Trawlbeam Tray" && HasChannel ? 10 : 0;
    }
    WindowHandle FindChild(WindowHandle /*parent*/, const Text& /*className*/) override { return 11; }
    void SendText(WindowHandle window, const Text& text) override {
        Sent.push_back(std::to_string(window) + ": " + text);
        if (const auto meanwhile = std::exchange(Meanwhile, nullptr)) meanwhile();
    }
    bool HasChannel = true;
    // Further windows: class by caption.
    std::map<Text, Text> TopLevel;
    std::vector<Text> Sent;
    // Happens while the next text is sent.
    std::function<void()> Meanwhile;
};

class FakeClipboard : public Clipboard {
public:
    bool SetText(WindowHandle /*owner*/, const Text& text) override {
        Content = text;
        return true;
    }
    Text Content;
};

struct FakeSystem {
    FakeSystem() { Files.Folders = {"/app", "/app/Log", "/app/Data"}; }

    operator Platform() {
        return {Clock, Random,   Pump,     Files,   Dialogs,    Resources, Processes,
                Shell, Versions, Registry, Machine, WindowText, Clipboard};
    }
    // What came since the last call into the log of the month, lines without their date.
    std::vector<Text> TakeLog() {
        std::vector<Text> lines;
        for (const Text& line : Split(Files.Contents["/app/Log/Trawlbeam202611.log"], '\n')) {
            if (!line.empty()) lines.push_back(line.substr(19, line.size() - 20));
        }
        Files.Contents.erase("/app/Log/Trawlbeam202611.log");
        return lines;
    }

    FakeClock Clock;
    FakeRandom Random;
    FakePump Pump;
    FakeFiles Files;
    FakeDialogs Dialogs;
    FakeResources Resources;
    FakeProcesses Processes;
    FakeShell Shell;
    FakeFileVersions Versions;
    FakeRegistry Registry;
    FakeMachine Machine;
    FakeWindowText WindowText;
    FakeClipboard Clipboard;
};

inline Deployment TestDeployment() {
    return {"Trawlbeam", "1.0.0", "http://home.trawlbeam.example/", {}, "http://s{?}.example/Reference"};
}

}  // namespace tb
