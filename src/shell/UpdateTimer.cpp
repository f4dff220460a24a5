#include "shell/UpdateTimer.h"

#include "base/errors.h"
#include "refdata/VersionReport.h"
#include "shell/helpers/SettingValues.h"
#include "shell/helpers/ThisProcess.h"

namespace tb {

namespace {

constexpr const char* Activity = "Auto Check Updates";

constexpr std::int32_t DefaultEvilDBSeconds = 60;
constexpr std::int32_t DefaultFreeMemSeconds = 1800;

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

UpdateTimer::UpdateTimer(Parts parts) : m_Parts(std::move(parts)) {
    m_Parts.tmUpdate.SetInterval(TimerTick);
    m_Parts.tmUpdate.TimerEvent.Connect([this] { Tick(); });
}

void UpdateTimer::Setup() {
    const App& app = m_Parts.Access.Program;
    ReadPeriods();
    m_Parts.tmUpdate.SetEnabled(IsTimerEnabled(app, "EVILDB_ENABLED") || IsTimerEnabled(app, "FREEMEM_ENABLED"));
}

void UpdateTimer::ReadPeriods() {
    const App& app = m_Parts.Access.Program;
    m_EvilDBPeriod = GetTimerInterval(app, "EVILDB_INTERVAL", DefaultEvilDBSeconds);
    m_FreeMemPeriod = GetTimerInterval(app, "FREEMEM_INTERVAL", DefaultFreeMemSeconds);
    Log(TimerLine("EvilDB", m_EvilDBPeriod, IsTimerEnabled(app, "EVILDB_ENABLED")), LogLevel::Debug);
    Log(TimerLine("FreeMem", m_FreeMemPeriod, IsTimerEnabled(app, "FREEMEM_ENABLED")), LogLevel::Debug);
}

void UpdateTimer::Tick() {
    const App& app = m_Parts.Access.Program;
    Trap(
        [&] {
            FreeMemoryIfDue();
            const bool isDue = IsDue(m_EvilDBElapsed, m_EvilDBPeriod, m_Parts.tmUpdate.Interval());
            if (!IsTimerEnabled(app, "EVILDB_ENABLED")) return;
            if (isDue || m_Parts.Late.IsBackOnline()) Cycle();
        },
        [&](const RuntimeError& error) {
            Log("Update timer error " + error.Description, LogLevel::Always);
            m_Parts.tmUpdate.SetEnabled(app.Settings && IsTimerEnabled(app, "EVILDB_ENABLED"));
            m_Parts.Controller.EndActivity(Activity, false);
        });
}

void UpdateTimer::FreeMemoryIfDue() {
    const App& app = m_Parts.Access.Program;
    if (!IsDue(m_FreeMemElapsed, m_FreeMemPeriod, m_Parts.tmUpdate.Interval())) return;
    if (!IsTimerEnabled(app, "FREEMEM_ENABLED")) return;
    FreeMemory(app, m_Parts.Access.Log);
    Log("Timed FreeMemory()", LogLevel::Debug);
}

void UpdateTimer::Cycle() {
    const App& app = m_Parts.Access.Program;
    if (!m_Parts.Controller.StartActivity(Activity, false)) return;
    // No cycle may begin inside this one while it waits for the network.
    m_Parts.tmUpdate.SetEnabled(false);
    // Each wait for the network serves messages: the session may have ended meanwhile, and the settings with it.
    if (m_Parts.Late.HasServers()) AskServices();
    if (app.Settings) m_Parts.tmUpdate.SetEnabled(IsTimerEnabled(app, "EVILDB_ENABLED"));
    // The last statement: it may end the program.
    m_Parts.Controller.EndActivity(Activity, false);
}

void UpdateTimer::AskServices() {
    const App& app = m_Parts.Access.Program;
    if (const std::shared_ptr<EvilDB> list = m_Parts.Data.m_EvilDB) list->Update(GetClientKey(app));
    // Behind the list: the question may wait for its user for days.
    if (app.Settings && m_Parts.Late.StopsForVersions()) return m_Parts.Controller.NeedToExit(true);
    if (app.Settings) ReportVersions();
    if (app.Settings && app.Settings->GetXMLString("Main", "AutoUpdate", "0") == "1") CheckProgramUpdate();
}

void UpdateTimer::ReportVersions() {
    Clock& clock = m_Parts.Access.Program.System.Clock;
    const bool reported = m_LastVersionReport != Date();
    if (reported && clock.Now().Seconds() - m_LastVersionReport.Seconds() <= Date::SecondsPerDay) return;
    if (VersionReport(m_Parts.Access).SendVersions()) m_LastVersionReport = clock.Now();
}

void UpdateTimer::CheckProgramUpdate() {
    Text reason;
    if (!m_Updates.CanUpdate(false, reason)) {
        if (!reason.empty()) Log(reason, LogLevel::Debug);
        return;
    }
    cUpdate updater(m_Parts.Access, [this] { return m_Parts.Controller.NeedToExit(); });
    updater.LogMessage.Connect([this](const Text& line, LogLevel level) { Log(line, level); });
    m_Updates.CheckForUpdates(updater, false);
}

}  // namespace tb
