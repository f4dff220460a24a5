// The window that owns what lives as long as the program: the activity controller, the site list, the tray, the timers.
// It is hidden; in debug mode it shows the lines of the log as they come.
// Thread: the user-interface thread. Handlers can be entered again while a long job serves messages.
#pragma once

#include "shell/ControllerServices.h"
#include "shell/LateDefaults.h"
#include "shell/SiteTables.h"
#include "shell/cController.h"
#include "shell/helpers/App.h"
#include "shell/helpers/ProgramLog.h"
#include "sitedb/OverDB.h"
#include "ui/window/Form.h"
#include "ui/window/TextBox.h"
#include "ui/window/Timer.h"
#include "urlcheck/BrowserChannel.h"
#include "urlcheck/UpdateStatistics.h"
#include "urlcheck/UrlVerdict.h"
#include "urlcheck/sounds/Sounds.h"
#include "urlcheck/tray/frmSysTray.h"

namespace tb {

class frmController : public Form, private VerdictHost, private EvilDBHost {
public:
    // What it is put together with; all of it outlives the window.
    struct Parts {
        App& Program;
        ProgramLog& Log;
        ControllerServices& Services;
        SiteTables& Tables;
        // Gives each database a transport of its own.
        SenderFactory MakeSender;
        TrayIcon& Tray;
        Sound& Device;
        // The channel's contract is broken; `line` is for the log. Ends the process.
        std::function<void(const Text& line)> Broken;
    };

    // Makes the activity controller. The window is not loaded yet.
    frmController(Forms& forms, Parts parts);
    ~frmController() override;

    // Databases first, tray last: the data is in memory before the channel exists. Called once.
    void Setup();

    cController& Controller() { return m_Controller; }
    frmSysTray* SysTray() { return m_frmSysTray.get(); }
    // Null after the exit has dropped it.
    EvilDB* Sites() { return m_EvilDB.get(); }
    OverDB* Overrides() { return m_OverDB.get(); }

    // One request of a browser helper; see UrlVerdict.
    void CheckEvil(const std::vector<Text>& args, Text& reply) noexcept;

    // Of a button that was pressed.
    void PlayClickSound();
    // Asks for a submission run at once.
    void DoSubmission();
    // Keeps the submission timer running while queue files remain; whether they do.
    bool CheckSubmissionRetry();

    // Appends a line to the diagnostics view, which keeps about 500.
    void DisplayDebugMessage(const Text& text) override;

    // The tray's commands, by key in any case; unknown keys are ignored.
    void MenuClick(TextView key);

    TextBox& txtDiags;
    Timer& tmUpdate;
    Timer& tmSub;

private:
    // Of both timers, in milliseconds.
    static constexpr std::int32_t Tick = 1000;

    void Loaded();
    void Resized();
    void SetupEvilDB();
    void SetupOverDB();
    void SetupTimers();
    void ReadSubmissionPeriod();
    void ReadUpdatePeriods();
    void SetupTray();
    void BuildTrayMenu();
    Text DropZoneCaption(bool shown);
    void TimerLine(const Text& name, std::int32_t period, bool enabled);

    void UpdateTick();
    void FreeMemoryIfDue();
    void UpdateCycle();
    void AskServices();
    void ReportVersions();
    void CheckProgramUpdate();
    void SubmissionTick();
    bool SubmissionDue();

    void ShowTrawlMain(std::int16_t panel);
    void TrayDoubleClicked();
    void ToggleDropZone();
    void ToggleDiagnostics();
    void CaptionDiagnostics(bool shown);
    void MissingWindow(const char* window);

    // The exit, in the order of its steps.
    void ShutdownRaised();
    void QueryUnload(bool& cancel, UnloadMode mode);
    bool ConfirmsExit();
    void WaitForActivities();
    void Unloaded();
    void PrepareShutdown();

    // VerdictHost and EvilDBHost.
    void WriteLog(const Text& message, LogLevel level) noexcept override { m_Parts.Log.WriteLog(message, level); }
    bool Writes(LogLevel level) noexcept override { return m_Parts.Log.Writes(level); }
    Text GetXMLString(const Text& section, const Text& key, const Text& fallback) override;
    bool IsDebugMode() override { return m_Parts.Log.IsDebugMode(); }
    Text ProductName() override { return m_Parts.Program.Product.ProductName; }
    bool IsOverride(const Text& url) override { return m_OverDB && m_OverDB->IsOverride(url); }
    void AllowSite(const Text& url) override;
    void PlayAlertSound() override;
    UrlScore ScoreURL(const Text& url, const Text& addresses) override;
    void ShowNotifyURL(const Text& title, const Text& message, const Text& url, std::int32_t width, std::int32_t height,
                       std::int32_t seconds, std::int32_t iconFlags, const Text& callback) override;
    void ShowMessage(const Text& prompt, std::int32_t buttons) override;
    Text CategoryName(const Text& id) override;
    ElementPtr UpdateServers() override;
    std::unique_ptr<Sender> MakeUpdateSender() override;

    Parts m_Parts;
    LateDefaults m_LateDefaults{{m_Parts.Program, m_Parts.Log, m_Parts.MakeSender}, m_Parts.Tables, [this] {
                                    ReadSubmissionPeriod();
                                    ReadUpdatePeriods();
                                }};
    // Stays for as long as the window, because its Shutdown is raised inside operations of its own.
    cController m_Controller;
    // Dropped at the exit, which can come while one of them is at work: each operation holds what it uses.
    std::shared_ptr<EvilDB> m_EvilDB;
    std::shared_ptr<OverDB> m_OverDB;
    std::shared_ptr<UrlVerdict> m_Verdict;
    std::unique_ptr<UpdateStatistics> m_Statistics;
    std::unique_ptr<Sounds> m_Sounds;
    std::shared_ptr<frmSysTray> m_frmSysTray;
    // Milliseconds.
    std::int32_t m_EvilDBPeriod = 0;
    std::int32_t m_FreeMemPeriod = 0;
    std::int32_t m_SubmissionPeriod = 0;
    std::int32_t m_CurrentSubmissionPeriod = 0;
    std::int32_t m_EvilDBElapsed = 0;
    std::int32_t m_FreeMemElapsed = 0;
    std::int32_t m_SubmissionElapsed = 0;
    // 0 until the first report.
    Date m_LastVersionReport;
    std::int32_t m_DiagnosticsLines = 0;
};

}  // namespace tb
