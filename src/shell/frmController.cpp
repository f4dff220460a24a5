#include "shell/frmController.h"

#include "shell/helpers/SettingValues.h"
#include "ui/skin/WindowSkin.h"

namespace tb {

namespace {

constexpr std::int32_t KeptLines = 500;

}  // namespace

frmController::frmController(Forms& forms, Parts parts)
    : Form(forms, "frmController"),
      txtDiags(Add<TextBox>("txtDiags")),
      tmUpdate(Add<Timer>("tmUpdate")),
      tmSub(Add<Timer>("tmSub")),
      m_Parts(std::move(parts)),
      m_Host({Program(), m_Parts.Log, m_Parts.Access.MakeSender, m_Parts.Windows, m_Parts.Tables, m_Data, m_Sounds}),
      m_LateDefaults(m_Parts.Access, m_Parts.Tables),
      m_Updates({m_Parts.Access, m_Controller, m_LateDefaults, m_Data, tmUpdate}),
      m_Submissions({m_Parts.Access, m_Controller, m_Data, tmSub}),
      m_Exit({Program(), m_Parts.Log, m_Parts.Windows, m_Parts.Tables, m_Controller, m_Data, *this, tmUpdate, tmSub,
              m_frmSysTray}) {
    txtDiags.SetMultiLine(true);
    txtDiags.SetLocked(true);
    ConnectLog(m_Controller);
    Program().HasController = true;
    Program().DebugMessage.Connect([this](const Text& line) { DisplayDebugMessage(line); });
    LoadEvent.Connect([this] { Loaded(); });
    ResizeEvent.Connect([this] { Resized(); });
    m_LateDefaults.Changed.Connect([this] {
        m_Submissions.ReadPeriod();
        m_Updates.ReadPeriods();
    });
    m_Parts.Windows.Attach(*this);
}

frmController::~frmController() { Program().HasController = false; }

void frmController::Loaded() {
    const bool debug = Program().Debug.IsOn();
    SetCaption(ProductName() + " Controller" + (debug ? " Debug" : ""));
    if (!debug) return;
    txtDiags.SetText("");
    Show();
}

void frmController::Setup() {
    const App& app = Program();
    m_Statistics = std::make_unique<UpdateStatistics>(app.System.Clock, m_Parts.Log);
    m_Sounds = std::make_unique<Sounds>(m_Parts.Device, app.ClickSound, app.AlertSound);
    SetupEvilDB();
    if (app.Settings) SetupOverDB();
    if (app.Settings) SetupSubmissions();
    // The first update served messages: the session may have ended meanwhile.
    if (!app.Settings) return;
    m_Submissions.Setup();
    m_Updates.Setup();
    SetupTray();
}

template <typename Database>
void frmController::ConnectLog(Database& database) {
    database.LogMessage.Connect([this](const Text& line, LogLevel level) { m_Parts.Log.WriteLog(line, level); });
}

void frmController::SetupEvilDB() {
    const App& app = Program();
    EvilDBHost& categories = m_Host;
    const std::filesystem::path folder = m_Parts.Access.DataFolder();
    std::unique_ptr<UpdateGuard> guard;
    if (app.Product.ListGuard)
        guard = std::make_unique<UpdateGuard>(app.System.Files, app.System.Clock, folder, app.Product.BuildStamp);
    const auto list = std::make_shared<EvilDB>(app.System.Files, categories, folder, std::move(guard));
    m_Data.m_EvilDB = list;
    m_Data.Verdict = std::make_shared<UrlVerdict>(list, m_Host);
    ConnectLog(*list);
    list->EvilLoadPercent.Connect([this](std::int16_t percent) {
        if (percent >= 0 && percent <= 100) m_Parts.Windows.ShowProgress(static_cast<std::int16_t>(percent + 1));
    });
    list->EvilAdded.Connect(
        [this](std::int32_t added, std::int32_t deleted) { m_Statistics->EvilAdded(added, deleted); });
    const Text key = GetClientKey(app);
    list->Load(key);
    list->Update(key);
}

void frmController::SetupOverDB() {
    const App& app = Program();
    const auto overrides = std::make_shared<OverDB>(
        app.System.Files, app.System.Clock, m_Parts.Access.DataFile("SiteOverrides.xml"), app.Product.Separators);
    m_Data.m_OverDB = overrides;
    ConnectLog(*overrides);
    overrides->LoadDB();
}

void frmController::SetupSubmissions() {
    const auto store = std::make_shared<SubmissionDB>(
        SubmissionDB::Parts{m_Parts.Access, m_Parts.Formats, m_Parts.Windows.Qualifiers()});
    m_Data.oSubmissionDB = store;
    ConnectLog(*store);
    store->RedisplaySubmissions.Connect([this] { m_Parts.Windows.RedisplaySubmissions(); });
    store->RunWanted.Connect([this] {
        DoSubmission();
        CheckSubmissionRetry();
    });
    // What it cannot load it tells in messages.
    store->Setup();
}

void frmController::SetupTray() {
    const SystemVersion version = Program().System.Machine.Version();
    m_frmSysTray =
        std::make_shared<frmSysTray>(Family(), frmSysTray::Environment{m_Parts.Tray,
                                                                       Program().System.WindowText,
                                                                       {version.Platform, version.Major, version.Minor},
                                                                       std::make_shared<BrowserChannel>(m_Data.Verdict),
                                                                       m_Parts.Broken});
    m_frmSysTray->MenuClick.Connect([this](std::int32_t /*index*/, const Text& key) { MenuClick(key); });
    m_frmSysTray->SysTrayDoubleClick.Connect([this](std::int32_t /*button*/) { TrayDoubleClicked(); });
    m_frmSysTray->SysTrayMouseDown.Connect([this](std::int32_t button) {
        if (button == 2) m_frmSysTray->ShowMenu();
    });
    if (const PictureRef icon = ReadWindowSkin(Program(), m_frmSysTray->Name()).Icon(Family())) {
        m_frmSysTray->SetIcon(icon);
    }
    m_frmSysTray->Load();
    // Putting the icon there served messages, too.
    if (!Program().Settings) return;
    BuildTrayMenu();
    m_frmSysTray->SetTooltip(ProductName());
}

void frmController::CheckEvil(const std::vector<Text>& args, Text& reply) noexcept {
    m_Data.Verdict->CheckEvil(args, reply);
}

void frmController::PlayClickSound() {
    if (m_Sounds) m_Sounds->PlayClickSound(true);
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

}  // namespace tb
