#include "shell/frmController.h"

#include <algorithm>
#include <cmath>

#include "base/errors.h"
#include "base/numbers.h"
#include "shell/helpers/GeneralHelpers.h"
#include "sitedb/BuiltInCategories.h"

namespace tb {

namespace {

constexpr std::int32_t KeptLines = 500;
constexpr std::int32_t SubmissionSpread = 10000;

constexpr std::int32_t DefaultSubmissionSeconds = 60;
constexpr std::int32_t DefaultEvilDBSeconds = 60;
constexpr std::int32_t DefaultFreeMemSeconds = 1800;

}  // namespace

frmController::frmController(Forms& forms, Parts parts)
    : Form(forms, "frmController"),
      txtDiags(Add<TextBox>("txtDiags")),
      tmUpdate(Add<Timer>("tmUpdate")),
      tmSub(Add<Timer>("tmSub")),
      m_Parts(std::move(parts)) {
    txtDiags.SetMultiLine(true);
    txtDiags.SetLocked(true);
    tmUpdate.SetInterval(Tick);
    tmSub.SetInterval(Tick);
    m_Controller.LogMessage.Connect([this](const Text& line, LogLevel level) { WriteLog(line, level); });
    m_Controller.Shutdown.Connect([this] { ShutdownRaised(); });
    m_Parts.Program.HasController = true;
    m_Parts.Program.DebugMessage.Connect([this](const Text& line) { DisplayDebugMessage(line); });
    LoadEvent.Connect([this] { Loaded(); });
    ResizeEvent.Connect([this] { Resized(); });
    QueryUnloadEvent.Connect([this](bool& cancel, UnloadMode mode) { QueryUnload(cancel, mode); });
    UnloadEvent.Connect([this](bool& /*cancel*/) { Unloaded(); });
    tmUpdate.TimerEvent.Connect([this] { UpdateTick(); });
    tmSub.TimerEvent.Connect([this] { SubmissionTick(); });
}

frmController::~frmController() { m_Parts.Program.HasController = false; }

void frmController::Loaded() {
    SetCaption(ProductName() + " Controller" + (IsDebugMode() ? " Debug" : ""));
    if (!IsDebugMode()) return;
    txtDiags.SetText("");
    Show();
}

void frmController::Setup() {
    const App& app = m_Parts.Program;
    LogSink& lines = *this;
    m_Statistics = std::make_unique<UpdateStatistics>(app.System.Clock, lines);
    m_Sounds = std::make_unique<Sounds>(m_Parts.Device, app.ClickSound, app.AlertSound);
    SetupEvilDB();
    SetupOverDB();
    if (app.Settings) m_Parts.Services.SetupSubmissions();
    // The first update served messages: the session may have ended meanwhile.
    if (!app.Settings) return;
    SetupTimers();
    SetupTray();
}

void frmController::SetupEvilDB() {
    App& app = m_Parts.Program;
    EvilDBHost& categories = *this;
    VerdictHost& surroundings = *this;
    const std::filesystem::path folder = app.Path() / "Data";
    std::unique_ptr<UpdateGuard> guard;
    if (app.Product.ListGuard)
        guard = std::make_unique<UpdateGuard>(app.System.Files, app.System.Clock, folder, app.Product.BuildStamp);
    const auto list = std::make_shared<EvilDB>(app.System.Files, categories, folder, std::move(guard));
    m_EvilDB = list;
    list->LogMessage.Connect([this](const Text& line, LogLevel level) { WriteLog(line, level); });
    list->EvilLoadPercent.Connect([this](std::int16_t percent) {
        if (percent >= 0 && percent <= 100) m_Parts.Services.ShowProgress(static_cast<std::int16_t>(percent + 1));
    });
    m_Verdict = std::make_shared<UrlVerdict>(list, surroundings);
    list->EvilAdded.Connect(
        [this](std::int32_t added, std::int32_t deleted) { m_Statistics->EvilAdded(added, deleted); });
    const Text key = GetClientKey(app);
    list->Load(key);
    list->Update(key);
}

void frmController::SetupOverDB() {
    const App& app = m_Parts.Program;
    if (!app.Settings) return;
    m_OverDB = std::make_shared<OverDB>(app.System.Files, app.System.Clock, app.Path() / "Data" / "SiteOverrides.xml",
                                        app.Product.Separators);
    m_OverDB->LogMessage.Connect([this](const Text& line, LogLevel level) { WriteLog(line, level); });
    m_OverDB->LoadDB();
}

void frmController::SetupTimers() {
    const App& app = m_Parts.Program;
    ReadSubmissionPeriod();
    CheckSubmissionRetry();
    ReadUpdatePeriods();
    tmUpdate.SetEnabled(IsTimerEnabled(app, "EVILDB_ENABLED") || IsTimerEnabled(app, "FREEMEM_ENABLED"));
}

void frmController::ReadSubmissionPeriod() {
    App& app = m_Parts.Program;
    // Each run of the program gets a phase of its own, so that clients do not all post at the same moment.
    const double period = GetTimerInterval(app, "SUBDB_INTERVAL", DefaultSubmissionSeconds) +
                          std::floor(app.System.Random.Next() * SubmissionSpread);
    const bool isAskedFor = m_CurrentSubmissionPeriod != m_SubmissionPeriod;
    // Elapsed time goes one tick beyond it.
    m_SubmissionPeriod = static_cast<std::int32_t>(std::min(period, double{INT32_MAX - Tick}));
    if (!isAskedFor) m_CurrentSubmissionPeriod = m_SubmissionPeriod;
    TimerLine("Submission", m_SubmissionPeriod, IsTimerEnabled(app, "SUBDB_ENABLED"));
}

void frmController::ReadUpdatePeriods() {
    const App& app = m_Parts.Program;
    m_EvilDBPeriod = GetTimerInterval(app, "EVILDB_INTERVAL", DefaultEvilDBSeconds);
    m_FreeMemPeriod = GetTimerInterval(app, "FREEMEM_INTERVAL", DefaultFreeMemSeconds);
    TimerLine("EvilDB", m_EvilDBPeriod, IsTimerEnabled(app, "EVILDB_ENABLED"));
    TimerLine("FreeMem", m_FreeMemPeriod, IsTimerEnabled(app, "FREEMEM_ENABLED"));
}

void frmController::TimerLine(const Text& name, std::int32_t period, bool enabled) {
    WriteLog(name + " Timer " + ToText(static_cast<double>(period) / Tick) + " seconds" + (enabled ? "" : ", DISABLED"),
             LogLevel::Debug);
}

void frmController::SetupTray() {
    App& app = m_Parts.Program;
    const SystemVersion version = app.System.Machine.Version();
    m_frmSysTray =
        std::make_shared<frmSysTray>(Family(), frmSysTray::Environment{m_Parts.Tray,
                                                                       app.System.WindowText,
                                                                       {version.Platform, version.Major, version.Minor},
                                                                       std::make_shared<BrowserChannel>(m_Verdict),
                                                                       m_Parts.Broken});
    m_frmSysTray->MenuClick.Connect([this](std::int32_t /*index*/, const Text& key) { MenuClick(key); });
    m_frmSysTray->SysTrayDoubleClick.Connect([this](std::int32_t /*button*/) { TrayDoubleClicked(); });
    m_frmSysTray->SysTrayMouseDown.Connect([this](std::int32_t button) {
        if (button == 2) m_frmSysTray->ShowMenu();
    });
    m_frmSysTray->Load();
    BuildTrayMenu();
    m_frmSysTray->SetTooltip(ProductName());
}

void frmController::BuildTrayMenu() {
    const auto add = [this](const Text& caption, const Text& key) { m_frmSysTray->AddMenuItem(caption, key); };
    const App& app = m_Parts.Program;
    add(ProductName() + " Anti-Scam System", "dblclick");
    add("-", "");
    add("&Main", "menu1");
    add("&Submit Scams", "menu2");
    add("&Preferences", "menu3");
    add(ProductName() + " Ho&mepage", "trawlweb");
    add("-", "");
    if (IsDebugMode()) {
        add("Hide Debu&g Diagnostics", "diag");
        add("-", "");
    }
    if (IsWindows2000OrLater(app)) {
        add(DropZoneCaption(GetXMLString("Desktop", "Show", "1") == "1"), "trawldrop");
        add("-", "");
    }
    add("&Help...", "help");
    add("&About...", "about");
    add("-", "");
    add("&Exit", "exit");
}

Text frmController::DropZoneCaption(bool shown) {
    return Text(shown ? "Hide" : "Show") + " " + ProductName() + " &DropZone";
}

void frmController::CheckEvil(const std::vector<Text>& args, Text& reply) noexcept {
    const std::shared_ptr<UrlVerdict> verdict = m_Verdict;
    verdict->CheckEvil(args, reply);
}

void frmController::DisplayDebugMessage(const Text& text) {
    Text lines = txtDiags.GetText();
    if (!lines.empty()) lines += "\r\n";
    lines += text;
    if (++m_DiagnosticsLines > KeptLines) {
        const size_t end = lines.find("\r\n");
        if (end != Text::npos) lines.erase(0, end + 2);
        --m_DiagnosticsLines;
    }
    txtDiags.SetText(lines);
    txtDiags.SetSelStart(static_cast<std::int32_t>(lines.size()));
}

void frmController::Resized() {
    if (WindowState() == static_cast<std::int32_t>(WindowStates::Minimized)) {
        Hide();
        SetWindowState(static_cast<std::int32_t>(WindowStates::Normal));
        CaptionDiagnostics(false);
        return;
    }
    txtDiags.Move(0, 0, ScaleWidth(), ScaleHeight());
}

Text frmController::GetXMLString(const Text& section, const Text& key, const Text& fallback) {
    const xmlINI* const settings = m_Parts.Program.Settings.get();
    return settings != nullptr ? settings->GetXMLString(section, key, fallback) : fallback;
}

void frmController::PlayClickSound() {
    if (m_Sounds) m_Sounds->PlayClickSound(true);
}

void frmController::PlayAlertSound() {
    if (m_Sounds) m_Sounds->PlayAlertSound(true);
}

UrlScore frmController::ScoreURL(const Text& url, const Text& addresses) {
    UrlScore score;
    score.Flag = m_Parts.Tables.Countries->ScoreURL(url, addresses, score.Score, score.Country);
    return score;
}

void frmController::AllowSite(const Text& url) {
    if (m_Parts.Services.AllowInWindow(url)) return;
    const std::shared_ptr<OverDB> overrides = m_OverDB;
    if (!overrides) return;
    overrides->AddToDB(url);
    overrides->SaveDB();
}

void frmController::ShowNotifyURL(const Text& title, const Text& message, const Text& url, std::int32_t width,
                                  std::int32_t height, std::int32_t seconds, std::int32_t iconFlags,
                                  const Text& callback) {
    if (!m_Parts.Services.ShowNotifyURL(title, message, url, width, height, seconds, iconFlags, callback)) {
        MissingWindow("frmNotifyURL");
    }
}

void frmController::ShowMessage(const Text& prompt, std::int32_t buttons) {
    tb::ShowMessage(m_Parts.Program, prompt, buttons);
}

Text frmController::CategoryName(const Text& id) {
    const App& app = m_Parts.Program;
    const ElementPtr categories = app.Settings ? app.Settings->TryGlobalsSection("CATEGORIES") : nullptr;
    if (!categories) return BuiltInCategoryName(id);
    const ElementPtr category = categories->FindElementAttribute2("ID", id);
    if (!category) throw Error(ErrorNumber::ObjectNotSet);
    return category->FindAttributeValue("NAME");
}

ElementPtr frmController::UpdateServers() {
    const App& app = m_Parts.Program;
    if (!app.Settings) throw Error(ErrorNumber::ObjectNotSet);
    return app.Settings->GlobalsFindXMLElement("SERVERS", "NAME", "EVILDBSVR");
}

std::unique_ptr<Sender> frmController::MakeUpdateSender() {
    std::unique_ptr<Sender> sender = m_Parts.MakeSender();
    sender->Key(GetClientKey(m_Parts.Program));
    return sender;
}

}  // namespace tb
