// A program that one drags from: it offers mails, stored messages and texts, to the mouse or by itself.
//   dragsource ITEM ...                             opens a window; a press of the mouse button in it begins the drag
//   dragsource --onto CAPTION [--answer] ITEM ...   drags by itself onto the window with that caption, without a mouse
//   dragsource --onto CAPTION [--answer] --list FILE   the same once for each line of FILE, "KIND VALUE"
// ITEM, or a line: what one drag offers
//   --text TEXT       text text         plain text
//   --mail FILE       mail file         a mail in the Internet's form
//   --stored FOLDER   stored folder     a message in stored form, of the files headers, html, rtf and plain there
//   --contents FILE   contents file     the mail of a file as a stored message, its body as plain text
//   dragsource --open                               chooses the submissions in the menu of the program's tray icon
// --answer confirms the dialogs of the program that the window belongs to. Prints a line for each drag: the result of
// the drag and its effect. Exits 0 when all were dropped.
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
constexpr DWORD AnswerEvery = 15;

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

// A mail with CR LF as a mail program would store it.
void AddStoredMail(OfferedData& data, const Text& mail) {
    const size_t end = mail.find("\r\n\r\n");
    std::map<Text, Text> streams{{HeadersStream, mail.substr(0, end)}};
    if (end != Text::npos) streams[PlainStream] = mail.substr(end + 4);
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
    } else if (kind == "contents") {
        AddStoredMail(data, ReadFile(value));
    } else {
        throw RuntimeError(0, "unknown kind " + kind);
    }
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
    std::printf("%08lx %lu\n", static_cast<unsigned long>(result), static_cast<unsigned long>(effect));
    std::fflush(stdout);
    return result == DRAGDROP_S_DROP && effect != DROPEFFECT_NONE;
}

// Confirms what the dragged-on program asks, as long as it lives.
class Answers {
public:
    explicit Answers(HWND target) {
        GetWindowThreadProcessId(target, &m_Process);
        m_Thread = std::thread([this] {
            while (!m_End) {
                EnumWindows(&Answers::Confirm, static_cast<LPARAM>(m_Process));
                Sleep(AnswerEvery);
            }
        });
    }
    Answers(const Answers&) = delete;
    Answers& operator=(const Answers&) = delete;
    ~Answers() {
        m_End = true;
        m_Thread.join();
    }

private:
    static BOOL CALLBACK Confirm(HWND window, LPARAM process) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner != static_cast<DWORD>(process) || !IsWindowVisible(window) || !IsWindowEnabled(window)) return TRUE;
        char name[64] = "", caption[64] = "";
        GetClassNameA(window, name, sizeof name);
        GetWindowTextA(window, caption, sizeof caption);
        const bool asks = Text(name) == "#32770" || Text(caption) == "Assign Submission Category";
        if (asks) PostMessageA(window, WM_COMMAND, IDOK, 0);
        return TRUE;
    }

    DWORD m_Process = 0;
    std::atomic<bool> m_End{false};
    std::thread m_Thread;
};

// The menu takes keys through the window that owns it; the submissions are its third choice.
int OpenSubmissions() {
    const HWND tray = FindWindowA(nullptr, "Trawlbeam Tray");
    DWORD process = 0;
    if (GetWindowThreadProcessId(tray, &process) == 0) throw RuntimeError(0, "there is no program");
    PostMessageA(tray, TrayIconMessage, TrayIconId, WM_RBUTTONDOWN);
    for (int tries = 0; OpenMenu(process) == nullptr; ++tries, Sleep(20)) {
        if (tries > 500) throw RuntimeError(0, "the menu did not open");
    }
    for (const WPARAM key : {VK_DOWN, VK_DOWN, VK_DOWN, VK_RETURN}) PostMessageA(tray, WM_KEYDOWN, key, 0);
    return 0;
}

HWND FindTarget(const Text& caption) {
    for (int tries = 0; tries < 500; ++tries, Sleep(20)) {
        const HWND window = FindWindowA(nullptr, caption.c_str());
        if (window != nullptr && IsWindowVisible(window)) return window;
    }
    throw RuntimeError(0, "there is no window " + caption);
}

void PlaceMouse(HWND target) {
    RECT place{};
    GetWindowRect(target, &place);
    SetWindowPos(target, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    SetCursorPos((place.left + place.right) / 2, (place.top + place.bottom) / 2);
}

// What one drag offers: kinds and values.
using Items = std::vector<std::pair<Text, std::wstring>>;

bool DragAll(const std::vector<Items>& drags, const Text& caption, bool answers) {
    const HWND target = FindTarget(caption);
    std::unique_ptr<Answers> answering;
    if (answers) answering = std::make_unique<Answers>(target);
    bool all = true;
    for (const auto& drag : drags) {
        const ComPointer<OfferedData> data(new OfferedData);
        for (const auto& [kind, value] : drag) Offer(*data.Get(), kind, value);
        PlaceMouse(target);
        // The drag looks at the place of the mouse with each message.
        std::atomic<bool> over{false};
        const DWORD thread = GetCurrentThreadId();
        std::thread pushes([&] {
            while (!over) {
                PostThreadMessageA(thread, WM_KEYUP, VK_F24, 0);
                Sleep(2);
            }
        });
        all = Drag(*data.Get(), true) && all;
        over = true;
        pushes.join();
    }
    return all;
}

OfferedData* g_Offered = nullptr;

LRESULT CALLBACK Pressed(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_LBUTTONDOWN) {
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

std::vector<Items> ReadList(const std::filesystem::path& path) {
    std::ifstream file(path);
    std::vector<Items> drags;
    for (Text line; std::getline(file, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const size_t blank = line.find(' ');
        if (blank != Text::npos) drags.push_back({{line.substr(0, blank), ToSystem(line.substr(blank + 1))}});
    }
    return drags;
}

int Run(const std::vector<std::wstring>& arguments) {
    Text onto;
    bool answers = false;
    bool opens = false;
    std::vector<Items> drags;
    Items items;
    for (size_t index = 0; index < arguments.size(); ++index) {
        const Text name = FromSystem(arguments[index]);
        if (name == "--answer" || name == "--open") {
            (name == "--open" ? opens : answers) = true;
            continue;
        }
        if (index + 1 == arguments.size() || name.compare(0, 2, "--") != 0) return WrongUse;
        const std::wstring& value = arguments[++index];
        if (name == "--onto") {
            onto = FromSystem(value);
        } else if (name == "--list") {
            drags = ReadList(value);
        } else {
            items.emplace_back(name.substr(2), value);
        }
    }
    if (opens) return OpenSubmissions();
    if (!items.empty()) drags.push_back(items);
    if (drags.empty()) return WrongUse;
    const OleSession session;
    if (!onto.empty()) return DragAll(drags, onto, answers) ? 0 : Failed;
    const ComPointer<OfferedData> data(new OfferedData);
    for (const auto& [kind, value] : items) Offer(*data.Get(), kind, value);
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
    if (status == tb::WrongUse) std::fprintf(stderr, "usage: dragsource [--onto CAPTION [--answer]] ITEM ...\n");
    return status;
}
