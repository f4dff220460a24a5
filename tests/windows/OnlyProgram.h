// The right to be the one program of its name in the session.
#pragma once

#include "components/tbBHBridge/ChannelNames.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/Win32WindowText.h"

namespace tb {

// Only one test of the whole session has it at a time, in other processes too, because the names of the program's
// windows are fixed. Throws a RuntimeError when somebody else's program runs.
class OnlyProgram {
public:
    OnlyProgram() : m_Mutex(CreateMutexA(nullptr, FALSE, "Trawlbeam tests: the one running program")) {
        WaitForSingleObject(m_Mutex.Get(), INFINITE);
        const WindowHandle other = Win32WindowText().FindTopLevel(NormalClasses.Window, ChannelCaption);
        if (other == 0) return;
        ReleaseMutex(m_Mutex.Get());
        DWORD process = 0;
        GetWindowThreadProcessId(ToHwnd(other), &process);
        throw RuntimeError(1, "a program of this name is running already: process " + std::to_string(process));
    }
    OnlyProgram(const OnlyProgram&) = delete;
    OnlyProgram& operator=(const OnlyProgram&) = delete;
    ~OnlyProgram() { ReleaseMutex(m_Mutex.Get()); }

private:
    OwnedObject m_Mutex;
};

}  // namespace tb
