#include "base/errors.h"
#include "shell/frmController.h"
#include "shell/helpers/GeneralHelpers.h"

namespace tb {

namespace {

constexpr const char* UpdateActivity = "Auto Check Updates";
constexpr const char* SubmissionActivity = "Processing Submissions";

// True when the period is over, and begins it anew; otherwise one tick more has passed. A period of 0 is over each
// time.
bool IsDue(std::int32_t& elapsed, std::int32_t period, std::int32_t tick) {
    if (elapsed >= period) {
        elapsed = 0;
        return true;
    }
    elapsed += tick;
    return false;
}

}  // namespace

void frmController::UpdateTick() {
    Trap(
        [&] {
            FreeMemoryIfDue();
            const bool isDue = IsDue(m_EvilDBElapsed, m_EvilDBPeriod, tmUpdate.Interval());
            if (!IsTimerEnabled(m_Parts.Program, "EVILDB_ENABLED")) return;
            if (isDue || m_LateDefaults.IsBackOnline()) UpdateCycle();
        },
        [&](const RuntimeError& error) {
            WriteLog("Update timer error " + error.Description, LogLevel::Always);
            tmUpdate.SetEnabled(m_Parts.Program.Settings && IsTimerEnabled(m_Parts.Program, "EVILDB_ENABLED"));
            m_Controller.EndActivity(UpdateActivity, false);
        });
}

void frmController::FreeMemoryIfDue() {
    if (!IsDue(m_FreeMemElapsed, m_FreeMemPeriod, tmUpdate.Interval())) return;
    if (!IsTimerEnabled(m_Parts.Program, "FREEMEM_ENABLED")) return;
    FreeMemory(m_Parts.Program, *this);
    WriteLog("Timed FreeMemory()", LogLevel::Debug);
}

void frmController::UpdateCycle() {
    App& app = m_Parts.Program;
    if (!m_Controller.StartActivity(UpdateActivity, false)) return;
    // No cycle may begin inside this one while it waits for the network.
    tmUpdate.SetEnabled(false);
    // Each wait for the network serves messages: the session may have ended meanwhile, and the settings with it.
    if (m_LateDefaults.HasServers()) AskServices();
    if (app.Settings) tmUpdate.SetEnabled(IsTimerEnabled(app, "EVILDB_ENABLED"));
    // The last statement: it may end the program.
    m_Controller.EndActivity(UpdateActivity, false);
}

void frmController::AskServices() {
    const App& app = m_Parts.Program;
    if (const std::shared_ptr<EvilDB> list = m_EvilDB) list->Update(GetClientKey(app));
    // Behind the list: the question may wait for its user for days.
    if (app.Settings && m_LateDefaults.StopsForVersions()) return m_Controller.NeedToExit(true);
    if (app.Settings) ReportVersions();
    if (app.Settings && GetXMLString("Main", "AutoUpdate", "0") == "1") CheckProgramUpdate();
}

void frmController::ReportVersions() {
    const App& app = m_Parts.Program;
    const Date now = app.System.Clock.Now();
    const bool reported = m_LastVersionReport != Date();
    if (!reported || now.Seconds() - m_LastVersionReport.Seconds() > Date::SecondsPerDay) {
        if (m_Parts.Services.SendVersions()) m_LastVersionReport = app.System.Clock.Now();
    }
}

void frmController::CheckProgramUpdate() {
    Text reason;
    if (m_Parts.Services.CanUpdate(reason)) {
        m_Parts.Services.CheckForUpdates();
    } else if (!reason.empty()) {
        WriteLog(reason, LogLevel::Debug);
    }
}

void frmController::SubmissionTick() {
    Trap(
        [&] {
            if (!SubmissionDue()) return;
            m_SubmissionElapsed = 0;
            if (!m_Controller.StartActivity(SubmissionActivity, true)) return;
            tmSub.SetEnabled(false);
            m_Parts.Services.ProcessSubmissions();
            CheckSubmissionRetry();
            m_Controller.EndActivity(SubmissionActivity, true);
        },
        [&](const RuntimeError& error) {
            WriteLog("Error Submissions Timer Tick: " + error.Description, LogLevel::Always);
            m_Controller.EndActivity(SubmissionActivity, true);
        });
}

bool frmController::SubmissionDue() {
    if (m_CurrentSubmissionPeriod != m_SubmissionPeriod) {
        // DoSubmission asked for this run.
        tmSub.SetInterval(Tick);
        m_CurrentSubmissionPeriod = m_SubmissionPeriod;
        return true;
    }
    if (m_SubmissionElapsed >= m_CurrentSubmissionPeriod) return true;
    m_SubmissionElapsed += tmSub.Interval();
    return false;
}

bool frmController::CheckSubmissionRetry() {
    App& app = m_Parts.Program;
    bool remain = false;
    Trap([&] { remain = !app.System.Files.List(app.Path() / "Data" / "InProcess").empty(); },
         [&](const RuntimeError& error) { WriteLog("Error CheckSubmissionRetry: " + error.Line(), LogLevel::Always); });
    if (!remain) return false;
    WriteLog("Submissions remain, process next interval", LogLevel::Debug);
    tmSub.SetEnabled(IsTimerEnabled(app, "SUBDB_ENABLED"));
    return true;
}

void frmController::DoSubmission() {
    tmSub.SetInterval(1);
    m_CurrentSubmissionPeriod = 1;
    tmSub.SetEnabled(true);
}

}  // namespace tb
