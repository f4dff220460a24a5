// A program that drags onto another's window: it offers mails, stored messages and texts.
//   dragsource --onto CAPTION ITEM ...   drags to the middle of the window with that caption and drops there
// ITEM: what the drag offers
//   --text TEXT       plain text
//   --mail FILE       a mail in the Internet's form
//   --stored FOLDER   a message in stored form, of streams that the files there are named after
//   dragsource --menu                    opens the menu of the program's tray icon
//   dragsource --choose LETTER           opens it if need be, and chooses the row with that mnemonic
// Exits 0 when it was dropped and taken.
#include <windows.h>

#include <ole2.h>
#include <shellapi.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include "base/errors.h"
#include "platform/TrayIcon.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Win32Text.h"
#include "submissions/win32/OleSession.h"
#include "windows/Eventually.h"
#include "windows/OfferedData.h"

namespace tb {
namespace {

Text ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw Error(ErrorNumber::FileNotFound);
    return {std::istreambuf_iterator<char>(file), {}};
}

void Offer(OfferedData& data, const Text& kind, const std::wstring& value) {
    if (kind == "--text") {
        data.Blocks[CF_TEXT] = FromSystem(value) + '\0';
    } else if (kind == "--mail") {
        data.Blocks[FormatOf(InternetMessage)] = ReadFile(value);
    } else if (kind == "--stored") {
        std::map<Text, Text> streams;
        for (const auto& file : std::filesystem::directory_iterator(value)) {
            streams[file.path().filename().string()] = ReadFile(file.path());
        }
        data.AddStored(MakeStored(streams));
    } else {
        throw RuntimeError(0, "unknown kind " + kind);
    }
}

// Drops as soon as the target under it would take it.
class Source : public ComObject<IDropSource> {
public:
    HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escape, DWORD) noexcept override {
        if (escape) return DRAGDROP_S_CANCEL;
        return m_Seen ? DRAGDROP_S_DROP : S_OK;
    }
    HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD effect) noexcept override {
        m_Seen = m_Seen || effect != DROPEFFECT_NONE;
        return DRAGDROP_S_USEDEFAULTCURSORS;
    }

private:
    bool m_Seen = false;
};

// The menu takes keys through the window that owns it. No letter leaves it open.
int UseMenu(const std::wstring& letter) {
    const HWND tray = FindWindowW(nullptr, L"Trawlbeam Tray");
    DWORD process = 0;
    if (GetWindowThreadProcessId(tray, &process) == 0) throw RuntimeError(0, "there is no program");
    if (OpenMenu(process) == nullptr) PostMessageW(tray, TrayIconMessage, TrayIconId, WM_RBUTTONDOWN);
    if (!Eventually([&] { return OpenMenu(process) != nullptr; })) throw RuntimeError(0, "the menu did not open");
    if (!letter.empty()) PostMessageW(tray, WM_CHAR, letter.front(), 0);
    return 0;
}

bool DragOnto(OfferedData& data, const Text& caption) {
    HWND target = nullptr;
    const auto isThere = [&] { return IsWindowVisible(target = FindWindowA(nullptr, caption.c_str())) != FALSE; };
    if (!Eventually(isThere)) throw RuntimeError(0, "there is no window " + caption);
    // The drag looks at the place of the mouse with each message. A window that has just come is moved to its place
    // yet.
    std::atomic<bool> over{false};
    std::thread pushes([&, thread = GetCurrentThreadId()] {
        while (!over) {
            RECT place{};
            GetWindowRect(target, &place);
            SetWindowPos(target, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
            SetCursorPos((place.left + place.right) / 2, (place.top + place.bottom) / 2);
            PostThreadMessageW(thread, WM_KEYUP, VK_F24, 0);
            Sleep(20);
        }
    });
    const ComPointer<IDropSource> source(new Source);
    DWORD effect = 0;
    const HRESULT result = DoDragDrop(&data, source.Get(), DROPEFFECT_COPY, &effect);
    over = true;
    pushes.join();
    return result == DRAGDROP_S_DROP && effect != DROPEFFECT_NONE;
}

int Run(const std::vector<std::wstring>& arguments) {
    const OleSession session;
    const ComPointer<OfferedData> data(new OfferedData);
    Text onto;
    for (size_t index = 0; index < arguments.size(); ++index) {
        const Text name = FromSystem(arguments[index]);
        if (name == "--menu") return UseMenu({});
        if (++index == arguments.size()) break;
        if (name == "--choose") return UseMenu(arguments[index]);
        if (name == "--onto") {
            onto = FromSystem(arguments[index]);
        } else {
            Offer(*data.Get(), name, arguments[index]);
        }
    }
    if (onto.empty()) throw RuntimeError(0, "usage: dragsource --onto CAPTION ITEM ...");
    return DragOnto(*data.Get(), onto) ? 0 : 1;
}

}  // namespace
}  // namespace tb

int main() {
    int status = 1;
    int count = 0;
    // File names may have any characters.
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    tb::Trap(
        [&] {
            status = tb::Run({arguments + 1, arguments + count});
        },
        [](const tb::RuntimeError& error) { std::fprintf(stderr, "dragsource: %s\n", error.what()); });
    return status;
}
