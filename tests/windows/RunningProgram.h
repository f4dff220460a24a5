// The real program in a folder of the test's own, running for as long as the object lives.
#pragma once

#include "platform/win32/Handle.h"
#include "platform/win32/Win32WindowText.h"
#include "windows/ScratchFolder.h"

namespace tb {

// Only one runs at a time in the whole session, because its window's name is fixed: a second object waits for the
// first, in other processes too. Throws a RuntimeError when the program does not come up.
class RunningProgram {
public:
    // The list that it is started with; category 2, which blocks.
    static constexpr const char* Listed[] = {"http://evil.example/offer", "https://phish.test"};
    // The answer to a request for a listed site.
    static constexpr const char* Blocked = "Validated: 11/21/2026  (Category: Banking or Credit Card Spoof)";

    RunningProgram();
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    // Ends the process if it still runs.
    ~RunningProgram();

    HANDLE Process() const { return m_Process.Get(); }
    DWORD ProcessId() const { return m_ProcessId; }
    // The text box of the channel, and its window.
    WindowHandle Box();
    HWND Top();

    // The exit status, or STILL_ACTIVE when it has not ended after ten seconds.
    DWORD WaitForEnd() const;
    // What it has logged since it was ready: lines without date and time, each with a line feed.
    Text Log() const { return WholeLog().substr(m_ReadyAt); }

private:
    void WriteSnapshot() const;
    void StartProcess();
    void WaitUntilReady();
    Text WholeLog() const;

    OwnedObject m_OnlyOne;
    ScratchFolder m_Folder;
    Win32WindowText m_Windows;
    OwnedObject m_Process;
    DWORD m_ProcessId = 0;
    size_t m_ReadyAt = 0;
};

}  // namespace tb
