// The updater, which installs what the program's update check has staged and starts the program again:
//   <program's folder>\tbUpdater.exe PROGRAM PRODUCT
// It links no component, for it replaces them.
#include <windows.h>

#include "platform/win32/CrashHandler.h"
#include "platform/win32/Win32Clock.h"
#include "platform/win32/Win32Files.h"
#include "platform/win32/Win32Processes.h"
#include "platform/win32/Win32Pump.h"
#include "platform/win32/Win32Text.h"
#include "updater/Updater.h"
#include "updater/UpdaterLog.h"
#include "updater/win32/OnlyUpdater.h"
#include "updater/win32/UpdaterWindow.h"

namespace {

constexpr const char* Product = TRAWLBEAM_PRODUCT;

constexpr int DoneStatus = 0;
constexpr int FailedStatus = 1;

// False when this is not the one to install.
bool Install(const tb::UpdaterCommand& command, tb::Win32Files& files, tb::Win32Processes& processes,
             tb::LogSink& log) {
    const tb::Text caption = command.Product + " Updater";
    tb::OwnedObject only = tb::BecomeOnlyUpdater(caption, processes.Executable().parent_path());
    if (!only) {
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
    // Without a box, which nobody may be there to close.
    return tb::TrapOr(
        false, [&] { return Install(*command, files, processes, log); },
        [&](const tb::RuntimeError& error) { log.WriteLog("Error: " + error.Line(), tb::LogLevel::Always); });
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    const bool done =
        tb::TrapOr(false, Run, [](const tb::RuntimeError&) { /* the system does not tell where the log is */ });
    return done ? DoneStatus : FailedStatus;
}
