// The real program in a folder of the test's own, running for as long as the object lives.
#pragma once

#include <fstream>

#include "components/tbBHBridge/ChannelClient.h"
#include "platform/win32/ReplyWindow.h"
#include "platform/win32/Win32Files.h"
#include "sitedb/EvilDB.h"
#include "sitedb/codec/Encryption.h"
#include "windows/OnlyProgram.h"
#include "windows/ProgramProcess.h"
#include "windows/ScratchFolder.h"

namespace tb {

struct NoReferenceData : EvilDBHost {
    Text CategoryName(const Text&) override { return {}; }
    bool IsDebugMode() override { return false; }
};

// A program folder as it is installed: the program, its components and a Data folder with a snapshot and defaults that
// name no server, so that the program asks no service that may run on this machine.
class ProgramFolder {
public:
    ProgramFolder() {
        for (const Text& name : Split(TRAWLBEAM_INSTALLED, '|')) {
            std::filesystem::copy_file(BuiltProgram(name.c_str()), Path() / name);
        }
        std::filesystem::create_directory(Path() / "Data");
        std::ofstream(Path() / "Data" / "defaults.bin", std::ios::binary) << EncryptStringChk("<Defaults/>");
        Win32Files files;
        NoReferenceData host;
        EvilDB list(files, host, Path() / "Data");
        // Of category 2, which blocks.
        for (const char* url : {"http://evil.example/offer", "https://phish.test"})
            list.AddToDB(url, "2", "11/21/2026");
        if (!list.SaveDB("202611210900", list.Fingerprint())) throw RuntimeError(1, "no snapshot");
    }
    const std::filesystem::path& Path() const { return m_Folder.Path(); }
    // Writes a settings file with one value.
    void WriteSetting(const Text& section, const Text& key, const Text& value) const {
        std::ofstream(Path() / "Trawlbeam.ini")
            << "<INI DATE='01/01/2026 00:00:00'>\n<SECTION name='" << section << "'>\n<ELEMENT NAME='" << key << "'>"
            << value << "</ELEMENT>\n</SECTION>\n</INI>\n";
    }
    Text Settings() const {
        std::ifstream file(Path() / "Trawlbeam.ini");
        return {std::istreambuf_iterator<char>(file), {}};
    }
    // The lines of the log from character 20 on, behind date and time, each with a line feed; empty without a log. The
    // program opens it for writing again and again, which a stream lets it.
    Text Log() const {
        constexpr size_t prefix = 19;
        Text lines;
        for (const auto& name : Win32Files().List(Path() / "Log")) {
            std::ifstream file(Path() / "Log" / name);
            for (Text line; std::getline(file, line);) {
                if (line.size() > prefix) lines += line.substr(prefix) + "\n";
            }
        }
        return lines;
    }

private:
    ScratchFolder m_Folder;
};

class RunningProgram {
public:
    // The answer to a request for a listed site.
    static constexpr const char* Blocked = "Validated: 11/21/2026  (Category: Banking or Credit Card Spoof)";

    // Returns when the channel answers and the log ends with `lastLine`. Throws a RuntimeError when the program does
    // not come up.
    explicit RunningProgram(std::shared_ptr<ProgramFolder> folder = std::make_shared<ProgramFolder>(),
                            const Text& lastLine = {})
        : m_Folder(std::move(folder)), m_Process(m_Folder->Path() / "Trawlbeam.exe") {
        const auto isReady = [&] { return Box() != 0 && m_Folder->Log().ends_with(lastLine); };
        if (!Eventually([&] { return isReady() || WaitForEnd(0) != STILL_ACTIVE; }) || Box() == 0) {
            throw RuntimeError(1, "the program does not come up: " + m_Folder->Log());
        }
        m_ReadyAt = m_Folder->Log().size();
    }

    const ProgramFolder& Folder() const { return *m_Folder; }
    HANDLE Process() const { return m_Process.Handle(); }
    DWORD ProcessId() const { return m_Process.Id(); }
    // The text box of the channel, and its window.
    WindowHandle Box() { return m_Windows.FindChild(ToWindowHandle(Top()), NormalClasses.TextBox); }
    HWND Top() { return ToHwnd(m_Windows.FindTopLevel(NormalClasses.Window, ChannelCaption)); }
    // Chooses "Exit" in the tray icon's menu and answers the question; the exit status of the tool that does it.
    static DWORD ExitThroughTray(bool answerYes) {
        return ProgramProcess(BuiltProgram("tbprobe.exe"), answerYes ? L"--exit" : L"--refuse-exit").WaitForEnd();
    }

    DWORD WaitForEnd(DWORD milliseconds = DeadlineMs) const { return m_Process.WaitForEnd(milliseconds); }
    // What it has logged since it was ready.
    Text Log() const { return m_Folder->Log().substr(m_ReadyAt); }

private:
    OnlyProgram m_OnlyOne;
    std::shared_ptr<ProgramFolder> m_Folder;
    Win32WindowText m_Windows;
    ProgramProcess m_Process;
    size_t m_ReadyAt = 0;
};

// One browser window, which asks the running program: its own thread uses it.
class Browser {
public:
    Browser() : m_Client(m_Windows) { m_Client.Locate(); }
    // The reply, or "(none)".
    Text Ask(const Text& fields) {
        m_Client.Send(m_Reply.Window(), fields);
        return m_Reply.Take().value_or("(none)");
    }
    ChannelClient& Client() { return m_Client; }

private:
    Win32WindowText m_Windows;
    ChannelClient m_Client;
    ReplyWindow m_Reply;
};

}  // namespace tb
