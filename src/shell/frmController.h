// The window that owns what lives as long as the program: the activity controller, the databases, the tray, the timers.
// It is hidden; in debug mode it shows the lines of the log as they come.
// Thread: the user-interface thread. Handlers can be entered again while a long job serves messages.
#pragma once

#include "shell/DatabaseHost.h"
#include "shell/ProgramExit.h"
#include "shell/SubmissionTimer.h"
#include "shell/UpdateTimer.h"
#include "ui/window/TextBox.h"
#include "urlcheck/UpdateStatistics.h"

namespace tb {

class frmController : public Form {
public:
    // What it is put together with; all of it outlives the window.
    struct Parts {
        // Gives each database a transport of its own.
        ServiceAccess Access;
        ProgramLog& Log;
        ProgramWindows& Windows;
        SiteTables& Tables;
        ClipboardFormats& Formats;
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
    const Databases& Data() const { return m_Data; }
    frmSysTray* SysTray() { return m_frmSysTray.get(); }

    // One request of a browser helper; see UrlVerdict. Not before Setup.
    void CheckEvil(const std::vector<Text>& args, Text& reply) noexcept;

    // Of a button that was pressed.
    void PlayClickSound();
    // See SubmissionTimer.
    void DoSubmission() { m_Submissions.DoSubmission(); }
    bool CheckSubmissionRetry() { return m_Submissions.CheckSubmissionRetry(); }

    // Appends a line to the diagnostics view, which keeps about 500.
    void DisplayDebugMessage(const Text& text);

    // The tray's commands, by key in any case; unknown keys are ignored.
    void MenuClick(TextView key);

    TextBox& txtDiags;
    Timer& tmUpdate;
    Timer& tmSub;

private:
    App& Program() { return m_Parts.Access.Program; }
    const Text& ProductName() { return Program().Product.ProductName; }
    void Resized();
    void Loaded();
    void SetupEvilDB();
    void SetupOverDB();
    void SetupSubmissions();
    void SetupTray();
    template <typename Database>
    void ConnectLog(Database& database);

    void BuildTrayMenu();
    Text DropZoneCaption(bool shown);
    void ShowTrawlMain(std::int16_t panel);
    void TrayDoubleClicked();
    void ToggleDropZone();
    void ToggleDiagnostics();
    void CaptionDiagnostics(bool shown);
    void MissingWindow(const char* window);

    Parts m_Parts;
    // Stays for as long as the window, because its Shutdown is raised inside operations of its own.
    cController m_Controller;
    Databases m_Data;
    std::unique_ptr<UpdateStatistics> m_Statistics;
    std::unique_ptr<Sounds> m_Sounds;
    std::shared_ptr<frmSysTray> m_frmSysTray;
    DatabaseHost m_Host;
    LateDefaults m_LateDefaults;
    UpdateTimer m_Updates;
    SubmissionTimer m_Submissions;
    ProgramExit m_Exit;
    std::int32_t m_DiagnosticsLines = 0;
};

}  // namespace tb
