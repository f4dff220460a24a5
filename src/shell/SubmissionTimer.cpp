#include "shell/SubmissionTimer.h"

#include <algorithm>
#include <cmath>

#include "base/errors.h"
#include "shell/helpers/SettingValues.h"

namespace tb {

namespace {

constexpr const char* Activity = "Processing Submissions";

constexpr std::int32_t DefaultSeconds = 60;
// Milliseconds.
constexpr std::int32_t Spread = 10000;

}  // namespace

SubmissionTimer::SubmissionTimer(Parts parts)
    : m_Parts(std::move(parts)), m_Queue(Program().System.Files, m_Parts.Access.DataFolder()) {
    m_Parts.tmSub.SetInterval(TimerTick);
    m_Parts.tmSub.TimerEvent.Connect([this] { Tick(); });
}

void SubmissionTimer::Setup() {
    ReadPeriod();
    CheckSubmissionRetry();
}

void SubmissionTimer::ReadPeriod() {
    // Each run of the program gets a phase of its own, so that clients do not all post at the same moment.
    const double period = GetTimerInterval(Program(), "SUBDB_INTERVAL", DefaultSeconds) +
                          std::floor(Program().System.Random.Next() * Spread);
    const bool isAskedFor = m_CurrentSubmissionPeriod != m_SubmissionPeriod;
    // Elapsed time goes one tick beyond it.
    m_SubmissionPeriod = static_cast<std::int32_t>(std::min(period, double{INT32_MAX - TimerTick}));
    if (!isAskedFor) m_CurrentSubmissionPeriod = m_SubmissionPeriod;
    Log(TimerLine("Submission", m_SubmissionPeriod, IsTimerEnabled(Program(), "SUBDB_ENABLED")), LogLevel::Debug);
}

void SubmissionTimer::Tick() {
    Trap(
        [&] {
            if (!IsDue()) return;
            m_Elapsed = 0;
            if (!m_Parts.Controller.StartActivity(Activity, true)) return;
            m_Parts.tmSub.SetEnabled(false);
            if (const std::shared_ptr<SubmissionDB> store = m_Parts.Data.oSubmissionDB) store->ProcessSubmissions();
            CheckSubmissionRetry();
            m_Parts.Controller.EndActivity(Activity, true);
        },
        [&](const RuntimeError& error) {
            Log("Error Submissions Timer Tick: " + error.Description, LogLevel::Always);
            m_Parts.Controller.EndActivity(Activity, true);
        });
}

bool SubmissionTimer::IsDue() {
    if (m_CurrentSubmissionPeriod != m_SubmissionPeriod) {
        // DoSubmission asked for this run.
        m_Parts.tmSub.SetInterval(TimerTick);
        m_CurrentSubmissionPeriod = m_SubmissionPeriod;
        return true;
    }
    if (m_Elapsed >= m_CurrentSubmissionPeriod) return true;
    m_Elapsed += m_Parts.tmSub.Interval();
    return false;
}

bool SubmissionTimer::CheckSubmissionRetry() {
    const bool remain = TrapOr(
        false, [&] { return !m_Queue.IsEmpty(); },
        [&](const RuntimeError& error) { Log("Error CheckSubmissionRetry: " + error.Line(), LogLevel::Always); });
    if (!remain) return false;
    Log("Submissions remain, process next interval", LogLevel::Debug);
    m_Parts.tmSub.SetEnabled(IsTimerEnabled(Program(), "SUBDB_ENABLED"));
    return true;
}

void SubmissionTimer::DoSubmission() {
    m_Parts.tmSub.SetInterval(1);
    m_CurrentSubmissionPeriod = 1;
    m_Parts.tmSub.SetEnabled(true);
}

}  // namespace tb
