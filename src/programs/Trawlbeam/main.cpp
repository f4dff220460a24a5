// The program: the system's objects, the start chain over them, the message loop.
#include <windows.h>

#include "components/tbBHBridge/ChannelNames.h"
#include "components/tbSender/SenderLibrary.h"
#include "components/tbSender/tbSenderFace.h"
#include "platform/win32/ComponentLibrary.h"
#include "platform/win32/CrashHandler.h"
#include "platform/win32/MessageLoop.h"
#include "platform/win32/RegionalSettings.h"
#include "platform/win32/Win32Clipboard.h"
#include "platform/win32/Win32Clock.h"
#include "platform/win32/Win32Dialogs.h"
#include "platform/win32/Win32FileVersions.h"
#include "platform/win32/Win32Files.h"
#include "platform/win32/Win32Machine.h"
#include "platform/win32/Win32Processes.h"
#include "platform/win32/Win32Pump.h"
#include "platform/win32/Win32Random.h"
#include "platform/win32/Win32Registry.h"
#include "platform/win32/Win32Resources.h"
#include "platform/win32/Win32Shell.h"
#include "platform/win32/Win32Signatures.h"
#include "platform/win32/Win32Sound.h"
#include "platform/win32/Win32Text.h"
#include "platform/win32/Win32TrayIcon.h"
#include "platform/win32/Win32WindowText.h"
#include "programs/Trawlbeam/Deployment.h"
#include "shell/Start.h"
#include "shell/helpers/ThisProcess.h"
#include "submissions/win32/OleSession.h"
#include "submissions/win32/Win32ClipboardFormats.h"
#include "submissions/win32/Win32DropTargets.h"
#include "ui/main/MainWindows.h"
#include "ui/window/win32/Win32WindowSystem.h"

namespace {

// How the process ends: after the user's exit or a stop that a gate of the start asked for, when it could not come up,
// and when a request broke the channel's contract.
constexpr std::int32_t DoneStatus = 0;
constexpr std::int32_t FailedStatus = 1;
constexpr std::int32_t BrokenChannelStatus = 3;

class Program {
public:
    int Run() {
        m_Forms.LastUnloadedEvent.Connect([] { tb::EndMessageLoop(DoneStatus); });
        // At once: nothing waits for the windows that the start may have made.
        if (!m_Start.Main()) m_Processes.Exit(m_Start.HasFailed() ? FailedStatus : DoneStatus);
        return tb::RunMessageLoop([this] { return m_Forms.Loaded().empty(); });
    }

private:
    tb::Win32WindowSystem::ClassNames ClassNames() {
        const tb::ChannelClasses& names = tb::IsDevelopmentRun(m_App) ? tb::DevelopmentClasses : tb::NormalClasses;
        return {names.Window, names.TextBox};
    }
    std::shared_ptr<tb::frmController> MakeController() {
        return std::make_shared<tb::frmController>(
            m_Forms, tb::frmController::Parts{m_Access, m_Log, m_MainWindows, m_Tables, m_Formats, m_Tray, m_Sound,
                                              [this](const tb::Text& line) { EndBroken(line); }});
    }
    bool NeedToExit() { return m_Start.Controller() && m_Start.Controller()->Controller().NeedToExit(); }
    // The first field of a request is a contract. The one place where the program ends on purpose without being asked:
    // at once, without a dialog and without an exception through the window procedure.
    [[noreturn]] void EndBroken(const tb::Text& line) {
        m_Log.WriteLog(line, tb::LogLevel::Always);
        m_Processes.Exit(BrokenChannelStatus);
    }

    tb::Win32Clock m_Clock;
    tb::Win32Random m_Random;
    tb::Win32Pump m_Pump;
    tb::Win32Files m_Files;
    tb::Win32Dialogs m_Dialogs;
    tb::Win32Resources m_Resources;
    tb::Win32Processes m_Processes;
    tb::Win32Shell m_Shell;
    tb::Win32FileVersions m_FileVersions;
    tb::Win32Registry m_Registry;
    tb::Win32Machine m_Machine;
    tb::Win32WindowText m_WindowText;
    tb::Win32Clipboard m_Clipboard;
    tb::App m_App{{m_Clock, m_Random, m_Pump, m_Files, m_Dialogs, m_Resources, m_Processes, m_Shell, m_FileVersions,
                   m_Registry, m_Machine, m_WindowText, m_Clipboard},
                  {tb::ProductName, tb::ProgramVersion, tb::HomePage, tb::RegionalSeparators(), tb::ServerTemplate,
                   tb::UpdateKey, tb::ListGuard, tb::BuildStamp}};
    tb::ProgramLog m_Log{m_App};
    // What handlers of windows and of the icon throw ends here.
    const std::function<void(const tb::RuntimeError&)> m_Failed = [this](const tb::RuntimeError& error) {
        m_Log.WriteLog("Window error: " + error.Line(), tb::LogLevel::Always);
    };
    tb::Win32WindowSystem m_Windows{ClassNames(), m_Failed};
    tb::Win32TrayIcon m_Tray{m_Failed};
    tb::Win32Sound m_Sound;
    tb::Forms m_Forms{&m_Windows};
    tb::ComponentLibrary m_SenderFile{m_App.Path() / tb::tbSenderFace::File};
    const tb::SenderLibrary m_Senders{{[this] { return m_SenderFile.Function(tb::tbSenderFace::Entry); },
                                       tb::Text(tb::ProductName) + "/" + tb::ProgramVersion,
                                       [this] { return NeedToExit(); }}};
    tb::Win32Signatures m_Signatures;
    const tb::ServiceAccess m_Access{m_App, m_Log, [this] { return m_Senders.MakeSender(); }, &m_Signatures};
    tb::SiteTables m_Tables{m_App};
    tb::OleSession m_Ole;
    tb::Win32ClipboardFormats m_Formats;
    tb::Win32DropTargets m_Targets{m_Failed};
    tb::MainWindows m_MainWindows{{m_Access, m_Forms, m_Targets}};
    tb::Start m_Start{m_Access, m_Log, m_Tables, m_MainWindows, [this] { return MakeController(); }};
};

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    int status = FailedStatus;
    tb::Trap(
        [] {
            tb::Win32Files files;
            tb::CatchCrashes(files,
                             {tb::Win32Processes().Executable().parent_path(), tb::ProductName, tb::ProductName, {}});
        },
        [](const tb::RuntimeError&) { /* the program runs without a record of its crashes */ });
    tb::Trap([&] { status = Program().Run(); },
             [](const tb::RuntimeError& error) {
                 MessageBoxW(nullptr, tb::ToSystem(error.Line()).c_str(), tb::ToSystem(tb::ProductName).c_str(),
                             MB_ICONERROR | MB_SETFOREGROUND);
             });
    return status;
}
