#include "base/errors.h"
#include "base/numbers.h"
#include "shell/frmController.h"
#include "shell/helpers/GeneralHelpers.h"

namespace tb {

namespace {

constexpr int WaitPasses = 10;
constexpr std::int32_t WaitMilliseconds = 50;

}  // namespace

void frmController::ShutdownRaised() {
    // An exit that was deferred and then answered with No stays on the activity controller's record.
    if (!m_Controller.NeedToExit()) return;
    WriteLog(ProductName() + " Shutdown " + m_Parts.Program.Product.Version, LogLevel::Always);
    Unload(UnloadMode::Code);
}

void frmController::QueryUnload(bool& cancel, UnloadMode mode) {
    if (mode == UnloadMode::User || !ConfirmsExit()) {
        cancel = true;
        return;
    }
    WaitForActivities();
    m_Parts.Services.CloseMainWindow();
}

bool frmController::ConfirmsExit() {
    if (!m_Controller.ConfirmExit()) return true;
    const Text prompt = "Exiting will disable " + ProductName() + " protection.\r\n\r\nAre you sure you want to exit " +
                        ProductName() + "?";
    const std::int32_t answer = tb::ShowMessage(
        m_Parts.Program, prompt, MessageButtons::Exclamation | MessageButtons::YesNo, "Exit " + ProductName());
    if (answer == AnswerYes) return true;
    m_Controller.ConfirmExit(false);
    m_Controller.NeedToExit(false);
    return false;
}

void frmController::WaitForActivities() {
    Pump& pump = m_Parts.Program.System.Pump;
    for (int pass = 0; pass < WaitPasses && !m_Controller.CanExit(); ++pass) {
        pump.ProcessMessages();
        WriteLog("frmController QueryUnload, CanExit: " + ToText(m_Controller.CanExit()) +
                     " Count: " + std::to_string(m_Controller.ActivityCount()),
                 LogLevel::Debug);
        pump.Sleep(WaitMilliseconds);
    }
}

void frmController::Unloaded() {
    tmUpdate.SetEnabled(false);
    tmSub.SetEnabled(false);
    m_Parts.Program.HasController = false;
    // The channel lives until the tray goes, below.
    if (m_Verdict) m_Verdict->DropList();
    m_Parts.Services.DropSubmissions();
    if (m_EvilDB) m_EvilDB->Close();
    m_EvilDB.reset();
    m_OverDB.reset();
    m_Parts.Tables.WhiteList.reset();
    PrepareShutdown();
    if (m_frmSysTray) m_frmSysTray->Unload(UnloadMode::Code);
    m_Parts.Services.CloseNotifications();
}

void frmController::PrepareShutdown() {
    App& app = m_Parts.Program;
    if (GetXMLString("Desktop", "Show", "1") == "1" && IsWindows2000OrLater(app)) m_Parts.Services.CloseDropZone();
    // A message that they cannot be saved serves messages.
    if (const std::shared_ptr<xmlINI> settings = app.Settings) settings->SaveXMLINI();
    app.Components.reset();
    m_Parts.Services.CloseAbout();
    app.Settings.reset();
}

}  // namespace tb
