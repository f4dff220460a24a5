// The updater, which installs what the program's update check has staged and starts the program again:
//   <program's folder>\tbUpdater.exe PROGRAM PRODUCT
// It links no component, for it replaces them.
#include <windows.h>

#include <cstdint>

#include "platform/win32/CrashHandler.h"
#include "platform/win32/Win32Clock.h"
#include "platform/win32/Win32Files.h"
#include "platform/win32/Win32Processes.h"
#include "platform/win32/Win32Pump.h"
#include "platform/win32/Win32Text.h"
#include "programs/tbUpdater/UpdaterWindow.h"
#include "updater/Updater.h"
#include "updater/UpdaterLog.h"

namespace {

constexpr const char* Product = TRAWLBEAM_PRODUCT;

constexpr int DoneStatus = 0;
constexpr int FailedStatus = 1;

// The same for a folder however it was written when this program was started. Names of objects hold no paths, so it is
// hashed: FNV-1a, over 16 bits at a time.
std::uint64_t NumberOf(const std::filesystem::path& folder) {
    std::wstring path(32768, L'\0');
    path.resize(GetLongPathNameW(folder.c_str(), path.data(), static_cast<DWORD>(path.size())));
    if (path.empty()) path = folder.wstring();
    CharUpperBuffW(path.data(), static_cast<DWORD>(path.size()));
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const wchar_t unit : path) hash = (hash ^ unit) * 0x100000001B3;
    return hash;
}

// False when this is not the one to install.
bool Install(const tb::UpdaterCommand& command, tb::Win32Files& files, tb::Win32Processes& processes,
             tb::LogSink& log) {
    const tb::Text caption = command.Product + " Updater";
    const tb::Text name = caption + " " + std::to_string(NumberOf(processes.Executable().parent_path()));
    tb::OwnedObject only(CreateMutexA(nullptr, FALSE, name.c_str()));
    if (!only || GetLastError() == ERROR_ALREADY_EXISTS) {
        log.WriteLog("Another updater of this folder is running, exiting", tb::LogLevel::Always);
        return false;
    }
    tb::Win32Pump pump;
    tb::UpdaterWindow window(caption, std::move(only));
    tb::Updater({files, processes, pump, window, log}, command).Run();
    return true;
}

bool Run() {
    tb::Win32Files files;
    tb::Win32Clock clock;
    tb::Win32Processes processes;
    tb::CatchCrashes(files, {processes.Executable().parent_path(), Product, "tbUpdater", "tbUpdater: "});
    const tb::Text line = tb::FromSystem(GetCommandLineW());
    const std::optional<tb::UpdaterCommand> command =
        tb::ReadUpdaterCommand(line, {tb::Text(Product) + ".exe", Product});
    tb::UpdaterLog log(files, clock, processes.Executable().parent_path(), command ? command->Product : Product);
    if (!command) {
        log.WriteLog("The command line does not end in a program and a product: " + tb::Quoted(line, 400),
                     tb::LogLevel::Always);
        return false;
    }
    bool done = false;
    // Without a box, which nobody may be there to close.
    tb::Trap([&] { done = Install(*command, files, processes, log); },
             [&](const tb::RuntimeError& error) { log.WriteLog("Error: " + error.Line(), tb::LogLevel::Always); });
    return done;
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    bool done = false;
    tb::Trap([&] { done = Run(); }, [](const tb::RuntimeError&) { /* the system does not tell where the log is */ });
    return done ? DoneStatus : FailedStatus;
}
