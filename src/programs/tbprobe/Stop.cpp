#include "programs/tbprobe/Stop.h"

#include <windows.h>

#include "platform/win32/Handle.h"
#include "platform/win32/Win32Errors.h"
#include "programs/tbprobe/Probe.h"

namespace tb {

namespace {

constexpr DWORD PollMs = 20;
constexpr DWORD EndMs = 10000;

}  // namespace

void WaitForChannel(const Text& caption, int seconds) {
    Win32WindowText windows;
    ChannelClient client(windows, caption);
    const ULONGLONG deadline = GetTickCount64() + static_cast<ULONGLONG>(seconds) * 1000;
    while (!client.Locate()) {
        if (GetTickCount64() >= deadline) {
            throw NoChannel{"no channel: no window \"" + caption + "\" within " + std::to_string(seconds) + " s"};
        }
        Sleep(PollMs);
    }
}

int CloseProgram(const Text& caption) {
    Win32WindowText windows;
    const HWND window = ToHwnd(windows.FindTopLevel(NormalClasses.Window, caption));
    if (window == nullptr) throw NoChannel{"no channel: no window \"" + caption + "\""};
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    const OwnedObject process(OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId));
    if (!process) throw SystemError("OpenProcess", GetLastError());
    if (!PostMessageA(window, WM_CLOSE, 0, 0)) throw SystemError("PostMessage", GetLastError());
    if (WaitForSingleObject(process.Get(), EndMs) != WAIT_OBJECT_0) throw SystemError("the program did not end", EndMs);
    DWORD status = 0;
    if (!GetExitCodeProcess(process.Get(), &status)) throw SystemError("GetExitCodeProcess", GetLastError());
    return static_cast<int>(status);
}

}  // namespace tb
