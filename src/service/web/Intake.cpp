#include "service/web/Intake.h"

#include <chrono>
#include <set>
#include <utility>

namespace tb {

namespace {

constexpr size_t MostReportsWaiting = 10'000;
// Longer than any import takes.
constexpr int ReportPatience = 120'000;

// A client waits three seconds for its answer, here for its turn and for other writers of the store.
constexpr auto TurnPatience = std::chrono::milliseconds(1'000);
constexpr int SubmissionPatience = 1'000;

}  // namespace

ReportQueue::ReportQueue(const std::filesystem::path& folder, LogSink& log)
    : m_Log(log), m_Store(folder, ServiceStore::Opening::Existing) {
    m_Store.Patience(ReportPatience);
    m_Keeper = std::thread([this] { Keep(); });
}

ReportQueue::~ReportQueue() {
    {
        const std::lock_guard lock(m_Mutex);
        m_Stop = true;
    }
    m_Wake.notify_all();
    m_Keeper.join();
}

bool ReportQueue::Take(VersionReport report) {
    {
        const std::lock_guard lock(m_Mutex);
        if (m_Waiting.size() >= MostReportsWaiting) return false;
        m_Waiting.push_back(std::move(report));
    }
    m_Wake.notify_one();
    return true;
}

void ReportQueue::Keep() {
    std::unique_lock lock(m_Mutex);
    for (;;) {
        m_Wake.wait(lock, [this] { return m_Stop || !m_Waiting.empty(); });
        if (m_Waiting.empty()) return;
        const std::vector<VersionReport> reports = std::exchange(m_Waiting, {});
        lock.unlock();
        try {
            Reports(m_Store).Add(reports);
        } catch (const std::exception& error) {
            const Text count = std::to_string(reports.size());
            m_Log.WriteLog(count + " version reports were not stored: " + error.what(), LogLevel::Always);
        }
        lock.lock();
    }
}

SubmissionIntake::SubmissionIntake(const std::filesystem::path& folder)
    : m_Store(folder, ServiceStore::Opening::Existing) {
    m_Store.Patience(SubmissionPatience);
    // A client deletes what we have acknowledged, so that must have reached the disk.
    m_Store.Run("PRAGMA synchronous=FULL");
}

std::unique_lock<std::timed_mutex> SubmissionIntake::Turn() {
    std::unique_lock turn(m_Mutex, TurnPatience);
    if (!turn) throw StoreError("too many submissions at a time");
    return turn;
}

Submissions::Taken SubmissionIntake::Take(const Submission& submission) {
    const auto turn = Turn();
    return Submissions(m_Store).Add(submission);
}

Text SubmissionIntake::StatusLines(const std::vector<TextView>& ids) {
    const auto turn = Turn();
    Submissions submissions(m_Store);
    std::set<std::int64_t> told;
    Text lines;
    for (const TextView id : ids) {
        const auto number = SubmissionNumber(id);
        if (!number || !told.insert(*number).second) continue;
        const auto judgement = submissions.JudgementOf(*number);
        if (!judgement) continue;
        lines += SubmissionIdText(*number) + "=" + std::to_string(judgement->Status) + "," +
                 std::to_string(judgement->Disposition) + "\n";
    }
    return lines;
}

}  // namespace tb
