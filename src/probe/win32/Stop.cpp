#include "probe/win32/Stop.h"

#include <windows.h>

#include <algorithm>
#include <string>

#include "platform/TrayIcon.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/Win32Text.h"
#include "probe/win32/Probe.h"

namespace tb {

namespace {

constexpr DWORD PollMs = 20;
// For each step. It only matters where something is broken, for no machine is so slow.
constexpr DWORD StepMs = 300000;
// Until the menu is opened once more.
constexpr DWORD AgainMs = 10000;
constexpr const wchar_t* MenuClass = L"#32768";
constexpr WPARAM ExitLetter = 'e';  // "&Exit"
constexpr const wchar_t* Question = L"Exit Trawlbeam";

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

// The visible button of that caption, its mnemonic aside, anywhere inside the window; null when there is none.
HWND ButtonOf(HWND box, const wchar_t* caption) {
    struct Search {
        const wchar_t* Caption;
        HWND Found;
    } search{caption, nullptr};
    const auto look = [](HWND part, LPARAM to) -> BOOL {
        auto& wanted = *reinterpret_cast<Search*>(to);
        wchar_t className[32] = L"";
        GetClassNameW(part, className, 32);
        if (lstrcmpiW(className, L"BUTTON") != 0 || !IsWindowVisible(part)) return TRUE;
        wchar_t text[64] = L"";
        SendMessageW(part, WM_GETTEXT, 64, reinterpret_cast<LPARAM>(text));
        std::wstring plain(text);
        plain.erase(std::remove(plain.begin(), plain.end(), L'&'), plain.end());
        if (plain == wanted.Caption) wanted.Found = part;
        return wanted.Found == nullptr ? TRUE : FALSE;
    };
    EnumChildWindows(box, look, reinterpret_cast<LPARAM>(&search));
    return search.Found;
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
        if (!PostMessageW(m_Window, message, wParam, lParam)) throw SystemError("PostMessage", GetLastError());
    }

    // Its menu that is open, null when there is none.
    HWND Menu() const {
        return Find(MenuClass, nullptr, [](HWND window) { return window; });
    }
    // The button of that caption in its visible box of that title, which need not be one of the system's; null when
    // there is none.
    HWND Button(const wchar_t* title, const wchar_t* caption) const {
        return Find(nullptr, title, [caption](HWND box) { return ButtonOf(box, caption); });
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
    // What `part` finds in its visible windows of that class and title, null being any.
    template <typename Part>
    HWND Find(const wchar_t* className, const wchar_t* title, Part part) const {
        for (HWND window = nullptr; (window = FindWindowExW(nullptr, window, className, title)) != nullptr;) {
            DWORD owner = 0;
            GetWindowThreadProcessId(window, &owner);
            if (owner != m_ProcessId || !IsWindowVisible(window)) continue;
            if (const HWND found = part(window)) return found;
        }
        return nullptr;
    }

    HWND m_Window = nullptr;
    DWORD m_ProcessId = 0;
    OwnedObject m_Process;
};

// The button that answers the question. The menu that is open belongs to no other process's reach but the keyboard. Its
// letter chooses the item at once: a mouse that lies over the menu could move the choice between two keys. A window
// that comes to the front meanwhile closes the menu, perhaps before it was seen, and the letter is lost.
HWND AskToExit(const Target& target, const wchar_t* answer) {
    const auto menu = [&] { return target.Menu(); };
    const auto question = [&] { return target.Button(Question, answer); };
    const ULONGLONG deadline = GetTickCount64() + StepMs;
    do {
        if (menu() == nullptr) target.Post(TrayIconMessage, TrayIconId, WM_RBUTTONDOWN);
        if (WaitFor(AgainMs, menu) != nullptr) target.Post(WM_CHAR, ExitLetter, 0);
        if (const HWND button = WaitFor(AgainMs, question)) return button;
    } while (GetTickCount64() < deadline);
    return nullptr;
}

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
    const HWND button = AskToExit(target, answerYes ? L"Yes" : L"No");
    if (button == nullptr) throw StillRunning{"the question \"" + FromSystem(Question) + "\" did not come"};
    PostMessageW(button, BM_CLICK, 0, 0);
    if (answerYes) return target.WaitForEnd(StepMs);
    const ULONGLONG deadline = GetTickCount64() + StepMs;
    while (IsWindow(button)) {
        if (GetTickCount64() >= deadline) throw StillRunning{"the question stays after No"};
        Sleep(PollMs);
    }
    return 0;
}

}  // namespace tb
