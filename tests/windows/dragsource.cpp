// A program that one drags from: it offers mails, stored messages and texts, to the mouse or by itself.
//   dragsource ITEM ...                             opens a window; a press of the mouse button in it begins the drag
//   dragsource --onto CAPTION ITEM ...   drags by itself onto the window with that caption, without a mouse
// ITEM: what the drag offers
//   --text TEXT       plain text
//   --mail FILE       a mail in the Internet's form
//   --stored FOLDER   a message in stored form, of the files headers, html, rtf and plain there
//   dragsource --open                               chooses the submissions in the menu of the program's tray icon
// Prints "pressed" when the mouse button begins a drag, "over" when a window would take it, and the result of a drag
// and its effect. Exits 0 when it was dropped.
#include <windows.h>

#include <ole2.h>
#include <shellapi.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include "base/errors.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Win32Text.h"
#include "submissions/win32/OleSession.h"
#include "windows/OfferedData.h"
#include "windows/TrayMenu.h"

namespace tb {
namespace {

constexpr int Failed = 1;
constexpr int WrongUse = 2;
constexpr DWORD Allowed = DROPEFFECT_COPY;

Text ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw Error(ErrorNumber::FileNotFound);
    return {std::istreambuf_iterator<char>(file), {}};
}

void AddStored(OfferedData& data, const std::filesystem::path& folder) {
    std::map<Text, Text> streams;
    const std::pair<const char*, const char*> kinds[] = {
        {"headers", HeadersStream}, {"html", HtmlStream}, {"rtf", RtfStream}, {"plain", PlainStream}};
    for (const auto& [file, stream] : kinds) {
        if (std::filesystem::exists(folder / file)) streams[stream] = ReadFile(folder / file);
    }
    data.AddStored(MakeStored(streams));
    data.Describe();
}

void Offer(OfferedData& data, const Text& kind, const std::wstring& value) {
    if (kind == "text") {
        data.Blocks[CF_TEXT] = FromSystem(value) + '\0';
    } else if (kind == "mail") {
        data.Blocks[FormatOf(InternetMessage)] = ReadFile(value);
    } else if (kind == "stored") {
        AddStored(data, value);
    } else {
        throw RuntimeError(0, "unknown kind " + kind);
    }
}

void Print(const char* line) {
    std::puts(line);
    std::fflush(stdout);
}

// Follows the mouse, or drops as soon as the target under it has seen the drag.
class Source : public ComObject<IDropSource> {
public:
    explicit Source(bool byItself) : m_ByItself(byItself) {}

    HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escape, DWORD keys) noexcept override {
        if (escape) return DRAGDROP_S_CANCEL;
        if (m_ByItself) return m_Seen ? DRAGDROP_S_DROP : S_OK;
        return (keys & MK_LBUTTON) == 0 ? DRAGDROP_S_DROP : S_OK;
    }
    HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD effect) noexcept override {
        if (!m_Seen && effect != DROPEFFECT_NONE) Print("over");
        m_Seen = m_Seen || effect != DROPEFFECT_NONE;
        return DRAGDROP_S_USEDEFAULTCURSORS;
    }

private:
    const bool m_ByItself;
    bool m_Seen = false;
};

bool Drag(OfferedData& data, bool byItself) {
    const ComPointer<IDropSource> source(new Source(byItself));
    DWORD effect = 0;
    const HRESULT result = DoDragDrop(&data, source.Get(), Allowed, &effect);
    char line[40];
    std::snprintf(line, sizeof line, "%08lx %lu", static_cast<unsigned long>(result),
                  static_cast<unsigned long>(effect));
    Print(line);
    return result == DRAGDROP_S_DROP && effect != DROPEFFECT_NONE;
}

// The menu takes keys through the window that owns it: the letter of "&Submit Scams".
int OpenSubmissions() {
    const HWND tray = FindWindowA(nullptr, "Trawlbeam Tray");
    DWORD process = 0;
    if (GetWindowThreadProcessId(tray, &process) == 0) throw RuntimeError(0, "there is no program");
    PostMessageA(tray, TrayIconMessage, TrayIconId, WM_RBUTTONDOWN);
    if (!Eventually([&] { return OpenMenu(process) != nullptr; })) throw RuntimeError(0, "the menu did not open");
    PostMessageA(tray, WM_CHAR, 's', 0);
    return 0;
}

HWND FindTarget(const Text& caption) {
    HWND window = nullptr;
    const auto find = [&] { return IsWindowVisible(window = FindWindowA(nullptr, caption.c_str())) != FALSE; };
    if (!Eventually(find)) throw RuntimeError(0, "there is no window " + caption);
    return window;
}

void PlaceMouse(HWND target) {
    RECT place{};
    GetWindowRect(target, &place);
    SetWindowPos(target, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    SetCursorPos((place.left + place.right) / 2, (place.top + place.bottom) / 2);
}

bool DragOnto(OfferedData& data, const Text& caption) {
    const HWND target = FindTarget(caption);
    // The drag looks at the place of the mouse with each message. A window that has just come is moved to its place
    // yet.
    std::atomic<bool> over{false};
    const DWORD thread = GetCurrentThreadId();
    std::thread pushes([&] {
        for (int count = 0; !over; ++count) {
            if (count % 50 == 0) PlaceMouse(target);
            PostThreadMessageA(thread, WM_KEYUP, VK_F24, 0);
            Sleep(2);
        }
    });
    const bool dropped = Drag(data, true);
    over = true;
    pushes.join();
    return dropped;
}

OfferedData* g_Offered = nullptr;

LRESULT CALLBACK Pressed(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_LBUTTONDOWN) {
        Print("pressed");
        Drag(*g_Offered, false);
        return 0;
    }
    if (message == WM_DESTROY) PostQuitMessage(0);
    return DefWindowProcA(window, message, wParam, lParam);
}

// Until it is closed.
void ShowWindowToDragFrom(OfferedData& data) {
    g_Offered = &data;
    WNDCLASSA description{};
    description.lpfnWndProc = &Pressed;
    description.hInstance = GetModuleHandleA(nullptr);
    description.lpszClassName = "DragSource";
    description.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    RegisterClassA(&description);
    CreateWindowExA(0, "DragSource", "dragsource", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20, 260, 160, nullptr, nullptr,
                    description.hInstance, nullptr);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) DispatchMessageA(&message);
}

int Run(const std::vector<std::wstring>& arguments) {
    const OleSession session;
    const ComPointer<OfferedData> data(new OfferedData);
    Text onto;
    for (size_t index = 0; index < arguments.size(); ++index) {
        const Text name = FromSystem(arguments[index]);
        if (name == "--open") return OpenSubmissions();
        if (index + 1 == arguments.size() || name.compare(0, 2, "--") != 0) return WrongUse;
        const std::wstring& value = arguments[++index];
        if (name == "--onto") {
            onto = FromSystem(value);
        } else {
            Offer(*data.Get(), name.substr(2), value);
        }
    }
    if (!onto.empty()) return DragOnto(*data.Get(), onto) ? 0 : Failed;
    ShowWindowToDragFrom(*data.Get());
    return 0;
}

}  // namespace
}  // namespace tb

int main() {
    int status = tb::Failed;
    int count = 0;
    // File names may have any characters.
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    tb::Trap(
        [&] {
            status = tb::Run({arguments + 1, arguments + count});
        },
        [](const tb::RuntimeError& error) { std::fprintf(stderr, "dragsource: %s\n", error.what()); });
    if (status == tb::WrongUse) std::fprintf(stderr, "usage: dragsource [--onto CAPTION] ITEM ...\n");
    return status;
}
