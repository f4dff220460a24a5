// The program: the platform's objects, the service over them, the channel's window, the message loop.
#include <windows.h>

#include "base/errors.h"
#include "components/tbBHBridge/ChannelNames.h"
#include "platform/win32/ChannelWindow.h"
#include "platform/win32/MessageLoop.h"
#include "platform/win32/StderrLog.h"
#include "platform/win32/Win32Clock.h"
#include "platform/win32/Win32Dialogs.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/Win32Files.h"
#include "platform/win32/Win32WindowText.h"
#include "shell/TrawlbeamService.h"

namespace {

constexpr UINT BrokenChannelStatus = 3;

std::filesystem::path AppPath() {
    std::wstring name(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
        if (length == 0) throw tb::SystemError("GetModuleFileName", GetLastError());
        if (length < name.size()) {
            name.resize(length);
            return std::filesystem::path(name).parent_path();
        }
        name.resize(name.size() * 2);
    }
}

// Does what a text of the channel asks for.
void Serve(const tb::TrawlbeamService& service, tb::WindowText& windows, tb::LogSink& log, const tb::Text& line) {
    using Kind = tb::ChannelResult::Kind;
    const tb::ChannelResult result = service.HandleChannelText(line);
    switch (result.What) {
    case Kind::Nothing: break;
    case Kind::WakeUp: break;  // there is no main window to show
    case Kind::Reply: windows.SendText(result.ReplyWindow, result.Text); break;
    case Kind::Broken:
        // The first field is a contract. The one place where the program ends on purpose without being asked: at once,
        // without a dialog and without an exception through the window procedure.
        log.WriteLog(result.Text, tb::LogLevel::Always);
        TerminateProcess(GetCurrentProcess(), BrokenChannelStatus);
    }
}

int Run(tb::LogSink& log) {
    tb::Win32Files files;
    tb::Win32Dialogs dialogs;
    tb::Win32WindowText windows;
    tb::TrawlbeamService service({files, dialogs, log}, AppPath());
    service.Start();
    const tb::ChannelWindow channel(
        {tb::NormalClasses.Window, tb::ChannelCaption, tb::NormalClasses.TextBox},
        {[&](const tb::Text& line) { Serve(service, windows, log, line); }, [] { tb::EndMessageLoop(0); },
         [&](const tb::RuntimeError& error) {
             log.WriteLog("Browser channel error: " + error.Line(), tb::LogLevel::Always);
         }});
    log.WriteLog("Trawlbeam ready: " + std::to_string(service.Count()) + " entries", tb::LogLevel::Always);
    return tb::RunMessageLoop();
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    tb::Win32Clock clock;
    tb::StderrLog log(clock);
    int status = 1;
    tb::Trap([&] { status = Run(log); },
             [&](const tb::RuntimeError& error) {
                 log.WriteLog("Trawlbeam cannot start: " + error.Line(), tb::LogLevel::Always);
             });
    return status;
}
