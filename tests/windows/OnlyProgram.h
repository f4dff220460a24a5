// The right to be the one program of its name in the session.
#pragma once

#include "components/tbBHBridge/ChannelNames.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/Win32Text.h"
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
        throw RuntimeError(1, "a program of this name is running already: " + ImageOf(ToHwnd(other)));
    }
    OnlyProgram(const OnlyProgram&) = delete;
    OnlyProgram& operator=(const OnlyProgram&) = delete;
    ~OnlyProgram() { ReleaseMutex(m_Mutex.Get()); }

private:
    // Whose window it is: a file, with the number of its process.
    static Text ImageOf(HWND window) {
        DWORD id = 0;
        GetWindowThreadProcessId(window, &id);
        const OwnedObject process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
        wchar_t image[MAX_PATH] = L"";
        DWORD length = MAX_PATH;
        QueryFullProcessImageNameW(process.Get(), 0, image, &length);
        return FromSystem(image) + " (" + std::to_string(id) + ")";
    }

    OwnedObject m_Mutex;
};

}  // namespace tb
