// The real program in a folder of the test's own, running for as long as the object lives.
#pragma once

#include "platform/win32/Win32WindowText.h"
#include "windows/Eventually.h"
#include "windows/OnlyProgram.h"
#include "windows/ProgramProcess.h"
#include "windows/ScratchFolder.h"

namespace tb {

// A program folder as it is installed: the program, its components and a Data folder with a snapshot and defaults that
// name no server, so that the program asks no service that may run on this machine.
class ProgramFolder {
public:
    // The list in the snapshot; category 2, which blocks.
    static constexpr const char* Listed[] = {"http://evil.example/offer", "https://phish.test"};
    // The answer to a request for a listed site.
    static constexpr const char* Blocked = "Validated: 11/21/2026  (Category: Banking or Credit Card Spoof)";

    ProgramFolder();
    const std::filesystem::path& Path() const { return m_Folder.Path(); }
    // Writes a settings file with one value.
    void WriteSetting(const Text& section, const Text& key, const Text& value) const;
    Text Settings() const;
    // Writes a file of the Data folder.
    void WriteData(const char* name, const Text& bytes) const;
    // The lines of the log from character 20 on, behind date and time, each with a line feed; empty without a log.
    Text Log() const;

private:
    void WriteSnapshot() const;
    ScratchFolder m_Folder;
};

class RunningProgram {
public:
    static constexpr auto& Listed = ProgramFolder::Listed;
    static constexpr const char* Blocked = ProgramFolder::Blocked;

    // Returns when the channel answers. Throws a RuntimeError when the program does not come up.
    RunningProgram();
    // In a folder that exists already and was prepared; returns when the log ends with `lastLine`, too.
    explicit RunningProgram(std::shared_ptr<ProgramFolder> folder, const Text& lastLine = {});

    const ProgramFolder& Folder() const { return *m_Folder; }
    HANDLE Process() const { return m_Process.Handle(); }
    DWORD ProcessId() const { return m_Process.Id(); }
    // The text box of the channel, and its window.
    WindowHandle Box();
    HWND Top();
    // Chooses "Exit" in the tray icon's menu and answers the question; the exit status of the tool that does it.
    static DWORD ExitThroughTray(bool answerYes);

    DWORD WaitForEnd() const { return m_Process.WaitForEnd(); }
    // What it has logged since it was ready.
    Text Log() const { return m_Folder->Log().substr(m_ReadyAt); }

private:
    void WaitUntilReady(const Text& lastLine);

    OnlyProgram m_OnlyOne;
    std::shared_ptr<ProgramFolder> m_Folder;
    Win32WindowText m_Windows;
    ProgramProcess m_Process;
    size_t m_ReadyAt = 0;
};

}  // namespace tb
