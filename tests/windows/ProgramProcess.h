// A process that a test starts.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

#include "platform/win32/Handle.h"
#include "platform/win32/Win32Errors.h"
#include "windows/Eventually.h"

namespace tb {

class ProgramProcess {
public:
    // In the folder of its file. Error 51 when it does not start.
    explicit ProgramProcess(const std::filesystem::path& program, const std::wstring& arguments = {}) {
        STARTUPINFOW start{};
        start.cb = sizeof start;
        PROCESS_INFORMATION made{};
        std::wstring line = L"program " + arguments;
        if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                            program.parent_path().c_str(), &start, &made)) {
            throw SystemError("CreateProcess", GetLastError());
        }
        m_Process = OwnedObject(made.hProcess);
        m_Id = made.dwProcessId;
        m_Thread = OwnedObject(made.hThread);
    }
    ProgramProcess(const ProgramProcess&) = delete;
    ProgramProcess& operator=(const ProgramProcess&) = delete;
    // Ends the process if it still runs.
    ~ProgramProcess() {
        TerminateProcess(m_Process.Get(), 99);
        WaitForSingleObject(m_Process.Get(), DeadlineMs);
    }

    HANDLE Handle() const { return m_Process.Get(); }
    DWORD Id() const { return m_Id; }
    // Stops its first thread wherever that is: what a test sees then does not change under its eyes.
    void Suspend() const { SuspendThread(m_Thread.Get()); }
    void Resume() const { ResumeThread(m_Thread.Get()); }
    // The exit status, or STILL_ACTIVE when it has not ended after `milliseconds`.
    DWORD WaitForEnd(DWORD milliseconds = DeadlineMs) const {
        WaitForSingleObject(m_Process.Get(), milliseconds);
        DWORD status = STILL_ACTIVE;
        GetExitCodeProcess(m_Process.Get(), &status);
        return status;
    }

private:
    OwnedObject m_Process;
    OwnedObject m_Thread;
    DWORD m_Id = 0;
};

// Programs of a build lie in one folder, that of the test's own program.
inline std::filesystem::path BuiltProgram(const char* name) {
    wchar_t own[MAX_PATH];
    GetModuleFileNameW(nullptr, own, MAX_PATH);
    return std::filesystem::path(own).parent_path() / name;
}

}  // namespace tb
