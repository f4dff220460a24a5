#include "shell/ProgramExit.h"

#include "base/numbers.h"
#include "shell/helpers/Messages.h"
#include "shell/helpers/SettingValues.h"
#include "shell/helpers/SystemInfo.h"

namespace tb {

namespace {

constexpr int WaitPasses = 10;
constexpr std::int32_t WaitMilliseconds = 50;

}  // namespace

ProgramExit::ProgramExit(const Parts& parts) : m_Parts(parts) {
    m_Parts.Controller.Shutdown.Connect([this] { ShutdownRaised(); });
    m_Parts.Window.QueryUnloadEvent.Connect([this](bool& cancel, UnloadMode mode) { QueryUnload(cancel, mode); });
    m_Parts.Window.UnloadEvent.Connect([this](bool& /*cancel*/) { Unloaded(); });
}

void ProgramExit::ShutdownRaised() {
    // An exit that was deferred and then answered with No stays on the activity controller's record.
    if (!m_Parts.Controller.NeedToExit()) return;
    m_Parts.Log.WriteLog(ProductName() + " Shutdown " + m_Parts.Program.Product.Version, LogLevel::Always);
    m_Parts.Window.Unload(UnloadMode::Code);
}

void ProgramExit::QueryUnload(bool& cancel, UnloadMode mode) {
    if (mode == UnloadMode::User || !ConfirmsExit()) {
        cancel = true;
        return;
    }
    WaitForActivities();
    m_Parts.Windows.CloseMainWindow();
}

bool ProgramExit::ConfirmsExit() {
    if (!m_Parts.Controller.ConfirmExit()) return true;
    const Text prompt = "Exiting will disable " + ProductName() + " protection.\r\n\r\nAre you sure you want to exit " +
                        ProductName() + "?";
    const std::int32_t answer = ShowMessage(
        m_Parts.Program, prompt, MessageButtons::Exclamation | MessageButtons::YesNo, "Exit " + ProductName());
    if (answer == AnswerYes) return true;
    m_Parts.Controller.ConfirmExit(false);
    m_Parts.Controller.NeedToExit(false);
    return false;
}

void ProgramExit::WaitForActivities() {
    Pump& pump = m_Parts.Program.System.Pump;
    for (int pass = 0; pass < WaitPasses && !m_Parts.Controller.CanExit(); ++pass) {
        pump.ProcessMessages();
        m_Parts.Log.WriteLog("frmController QueryUnload, CanExit: " + ToText(m_Parts.Controller.CanExit()) +
                                 " Count: " + std::to_string(m_Parts.Controller.ActivityCount()),
                             LogLevel::Debug);
        pump.Sleep(WaitMilliseconds);
    }
}

void ProgramExit::Unloaded() {
    m_Parts.tmUpdate.SetEnabled(false);
    m_Parts.tmSub.SetEnabled(false);
    m_Parts.Program.HasController = false;
    m_Parts.Program.Messages = nullptr;
    DropDatabases();
    PrepareShutdown();
    if (m_Parts.Tray) m_Parts.Tray->Unload(UnloadMode::Code);
    m_Parts.Windows.CloseNotifications();
    // A window that stays, shown or hidden, would keep the process.
    m_Parts.Window.Family().UnloadAll();
}

void ProgramExit::DropDatabases() {
    Databases& data = m_Parts.Data;
    // The channel lives until the tray goes.
    if (data.Verdict) data.Verdict->DropList();
    data.oSubmissionDB.reset();
    if (data.m_EvilDB) data.m_EvilDB->Close();
    data.m_EvilDB.reset();
    data.m_OverDB.reset();
    m_Parts.Tables.WhiteList.reset();
}

void ProgramExit::PrepareShutdown() {
    App& app = m_Parts.Program;
    if (GetSetting(app, "Desktop", "Show", "1") == "1" && IsWindows2000OrLater(app)) m_Parts.Windows.CloseDropZone();
    // A message that they cannot be saved serves messages.
    if (const std::shared_ptr<xmlINI> settings = app.Settings) settings->SaveXMLINI();
    app.Components.reset();
    m_Parts.Windows.CloseAbout();
    app.Settings.reset();
}

}  // namespace tb
