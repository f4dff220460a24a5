#include "programs/tbprobe/Stop.h"

#include <windows.h>

#include "platform/TrayIcon.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Win32Errors.h"
#include "programs/tbprobe/Probe.h"

namespace tb {

namespace {

constexpr DWORD PollMs = 20;
// For each step. It only matters where something is broken, for no machine is so slow.
constexpr DWORD StepMs = 300000;
constexpr const char* MenuClass = "#32768";
constexpr const char* DialogClass = "#32770";
constexpr WPARAM ExitLetter = 'e';  // "&Exit"
constexpr const char* Question = "Exit Trawlbeam";

// Polls until `done` answers other than null; null after `milliseconds`.
template <typename Done>
HWND WaitFor(DWORD milliseconds, Done done) {
    const ULONGLONG deadline = GetTickCount64() + milliseconds;
    for (;;) {
        const HWND found = done();
        if (found != nullptr || GetTickCount64() >= deadline) return found;
        Sleep(PollMs);
    }
}

// A program by its window.
class Target {
public:
    explicit Target(const Text& caption) {
        Win32WindowText windows;
        m_Window = ToHwnd(windows.FindTopLevel(NormalClasses.Window, caption));
        if (m_Window == nullptr) throw NoChannel{"no channel: no window \"" + caption + "\""};
        GetWindowThreadProcessId(m_Window, &m_ProcessId);
        m_Process = OwnedObject(OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, m_ProcessId));
        if (!m_Process) throw SystemError("OpenProcess", GetLastError());
    }

    void Post(UINT message, WPARAM wParam, LPARAM lParam) const {
        if (!PostMessageA(m_Window, message, wParam, lParam)) throw SystemError("PostMessage", GetLastError());
    }

    // Its visible window of that class and title, null when there is none.
    HWND Find(const char* className, const char* title) const {
        for (HWND window = nullptr; (window = FindWindowExA(nullptr, window, className, title)) != nullptr;) {
            DWORD owner = 0;
            GetWindowThreadProcessId(window, &owner);
            if (owner == m_ProcessId && IsWindowVisible(window)) return window;
        }
        return nullptr;
    }

    int WaitForEnd(DWORD milliseconds) const {
        if (WaitForSingleObject(m_Process.Get(), milliseconds) != WAIT_OBJECT_0) {
            throw StillRunning{"the program did not end within " + std::to_string(milliseconds / 1000) + " s"};
        }
        DWORD status = 0;
        if (!GetExitCodeProcess(m_Process.Get(), &status)) throw SystemError("GetExitCodeProcess", GetLastError());
        return static_cast<int>(status);
    }

private:
    HWND m_Window = nullptr;
    DWORD m_ProcessId = 0;
    OwnedObject m_Process;
};

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

int CloseServer(const Text& caption) {
    const Target target(caption);
    target.Post(WM_CLOSE, 0, 0);
    return target.WaitForEnd(StepMs);
}

int ExitThroughTray(const Text& caption, bool answerYes) {
    const Target target(caption);
    // The menu that is open belongs to no other process's reach but the keyboard. Its letter chooses the item at once:
    // a mouse that lies over the menu could move the choice between two keys.
    target.Post(TrayIconMessage, TrayIconId, WM_RBUTTONDOWN);
    if (WaitFor(StepMs, [&] { return target.Find(MenuClass, nullptr); }) == nullptr) {
        throw StillRunning{"the tray icon's menu did not open"};
    }
    target.Post(WM_CHAR, ExitLetter, 0);
    const HWND box = WaitFor(StepMs, [&] { return target.Find(DialogClass, Question); });
    if (box == nullptr) throw StillRunning{Text("the question \"") + Question + "\" did not come"};
    PostMessageA(box, WM_COMMAND, answerYes ? IDYES : IDNO, 0);
    if (answerYes) return target.WaitForEnd(StepMs);
    const ULONGLONG deadline = GetTickCount64() + StepMs;
    while (IsWindow(box)) {
        if (GetTickCount64() >= deadline) throw StillRunning{"the question stays after No"};
        Sleep(PollMs);
    }
    return 0;
}

}  // namespace tb
