#include "shell/Start.h"

#include "base/codepage.h"
#include "base/errors.h"
#include "base/numbers.h"
#include "refdata/Defaults.h"
#include "shell/helpers/Folders.h"
#include "shell/helpers/Messages.h"
#include "shell/helpers/SettingValues.h"
#include "shell/helpers/SystemInfo.h"
#include "shell/helpers/ThisProcess.h"
#include "ui/settings/SettingsTable.h"

namespace tb {

namespace {

constexpr std::int32_t AgentNumberResource = 101;
constexpr std::int32_t HighestSessionId = 100000;
constexpr std::int32_t DefaultBackColor = 14737632;
constexpr std::int32_t KeptLogDays = 150;

}  // namespace

Start::Start(ServiceAccess access, ProgramLog& log, SiteTables& tables, ProgramWindows& windows,
             MakeController makeController)
    : m_Access(std::move(access)),
      m_App(m_Access.Program),
      m_Log(log),
      m_Tables(tables),
      m_Windows(windows),
      m_Installation(m_App, m_Log),
      m_MakeController(std::move(makeController)) {}

bool Start::Main() {
    bool runs = false;
    bool early = true;
    Trap(
        [&] {
            if (!ReadSettings()) return;
            early = false;
            runs = MakeWindows() && CheckInstallation() && BringUp();
        },
        [&](const RuntimeError& error) {
            m_HasFailed = true;
            const Text line = ErrorLine(error);
            m_Log.WriteLog(line, LogLevel::Always);
            // Until there is a skin, the program's own message window is not to be had.
            if (early) {
                m_App.System.Dialogs.ShowMessage(line, MessageButtons::Critical, m_App.Product.ProductName);
            } else {
                ShowMessage(m_App, line, MessageButtons::Critical);
            }
            ExitTail(false);
        });
    return runs;
}

bool Start::ReadSettings() {
    const App& app = m_App;
    m_App.SessionId = RoundToInt32(app.System.Random.Next() * HighestSessionId);
    m_App.AgentNumber = ToInt32(app.System.Resources.String(AgentNumberResource));
    m_Log.WriteLog(Text(80, '-'), LogLevel::Always);
    m_Log.WriteLog("Starting " + app.Product.Version, LogLevel::Always);
    if (const std::uint32_t page = app.System.Machine.AnsiCodePage(); page != CodePage::InUse().Number) {
        m_Log.WriteLog("Code page " + std::to_string(page) + " has more than one byte a character: texts are in " +
                           std::to_string(CodePage::InUse().Number),
                       LogLevel::Always);
    }
    m_App.Settings = std::make_shared<xmlINI>(xmlINI::Surroundings{
        app.System.Files, app.System.Clock, app.System.Dialogs, app.Product.Separators, app.Product.ProductName});
    m_App.Settings->LoadINI(app.Path() / (app.Product.ProductName + ".ini"));
    m_Log.WriteLog(app.Product.ProductName + ".ini initialized", LogLevel::Debug);
    if (Defaults(m_Access).CheckLoadDefaults()) return StopWith("CheckLoadDefaults TRUE, exiting", LogLevel::Always);
    if (!ReadSkinXML()) return StopWith("ReadSkinXML Failure", LogLevel::Always);
    return true;
}

bool Start::MakeWindows() {
    m_App.Messages = m_Windows.Messages();
    const Text homePage = m_App.SkinRoot->FindAttributeValue("URL");
    m_App.HomeURL = homePage.empty() ? m_App.Product.HomePage : homePage;
    m_App.HelpFile = m_App.Product.ProductName + ".chm";
    m_App.AppBackColor = ToInt32(m_App.Settings->GetXMLString("Main", "BackColor", std::to_string(DefaultBackColor)));
    m_Controller = m_MakeController();
    m_Controller->Load();
    if (!m_Controller->Controller().StartActivity(SetupName(), true)) {
        return StopWith("Controller StartActivity FALSE, exiting", LogLevel::Debug);
    }
    return true;
}

bool Start::CheckInstallation() {
    if (Stops(m_Installation.CheckInstallPendingUpdates(), "Pending updates to install, exiting")) return false;
    WriteDefaultSettings();
    if (Stops(CheckNameAndPreviousInstance(), "CheckNameAndPrevInstance TRUE, exiting")) return false;
    MakeFolders();
    m_Log.PruneLogFiles(m_App.AppPath() + "\\Log\\", KeptLogDays);
    m_App.Components = std::make_shared<ComponentList>();
    m_Installation.AddComponents();
    if (Stops(m_Installation.CheckForMissingComponents(), "CheckForMissingComponents TRUE, exiting")) return false;
    if (Stops(m_Installation.CheckExpireOrWarnVersion(), "CheckExpireOrWarnVersion TRUE, exiting")) return false;
    if (m_App.NeedToUpdate) m_Log.WriteLog("Need to update TRUE", LogLevel::Debug);
    return !Stops(Reference(m_Access, m_Tables.ForLoad()).LoadReferenceData(), "CheckLoadReferenceData TRUE, exiting");
}

bool Start::BringUp() {
    m_App.ClickSound = m_App.System.Resources.Custom("CLICK");
    m_App.AlertSound = m_App.System.Resources.Custom("ALERT");
    StartTrawlbeam();
    m_Windows.CloseSplash();
    FreeMemory(m_App, m_Log);
    m_Controller->Controller().EndActivity(SetupName(), true);
    return true;
}

bool Start::Stops(bool gate, const Text& line) {
    // Questions and waits of a gate serve messages: the session may have ended, and the settings are gone with it.
    if (!m_App.Settings) {
        ExitTail(false);
        return true;
    }
    if (gate) StopWith(line, LogLevel::Debug);
    return gate;
}

bool Start::StopWith(const Text& line, LogLevel level) {
    m_Log.WriteLog(line, level);
    ExitTail(true);
    return false;
}

void Start::ExitTail(bool fromItsBeginning) {
    if (fromItsBeginning) m_Log.WriteLog(m_App.Product.ProductName + " AllDone", LogLevel::Debug);
    // Not saved: what this start wrote into the settings is for this run only.
    m_App.Settings.reset();
    if (m_Controller) m_Controller->Controller().EndActivity(SetupName(), true);
}

Text Start::ErrorLine(const RuntimeError& error) { return m_App.Product.ProductName + " error: " + error.Line(); }

void Start::WriteDefaultSettings() {
    for (const Setting& setting : SettingsTable()) {
        if (setting.StartValue.empty()) continue;
        if (!m_App.Settings->GetXMLString(setting.Section, setting.Key, "").empty()) continue;
        m_App.Settings->WriteXMLString(setting.Section, setting.Key, Text(setting.StartValue));
    }
}

void Start::MakeFolders() {
    EnsureDirectory(m_App, m_App.Path() / "Log");
    EnsureDirectory(m_App, m_Access.DataFolder());
    SubmissionQueue(m_App.System.Files, m_Access.DataFolder()).MakeFolders();
}

void Start::StartTrawlbeam() {
    Trap(
        [&] {
            if (m_App.Settings->GetXMLString("MAIN", "SPLASH", "0") == "1") m_Windows.ShowSplash();
            m_Windows.SetupBrowserHelper();
            m_Controller->Setup();
            if (m_App.Settings && IsWindows2000OrLater(m_App)) m_Windows.SetupTrawlDrop();
            m_App.LastPanel = 1;
        },
        [&](const RuntimeError& error) {
            m_Log.WriteLog("StartTrawlbeam Error: " + error.Description, LogLevel::Always);
        });
}

}  // namespace tb
