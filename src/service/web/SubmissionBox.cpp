#include "service/web/SubmissionBox.h"

#include <chrono>
#include <set>

namespace tb {

namespace {

// A client waits three seconds for its answer, here for its turn and for other writers of the store.
constexpr auto TurnPatience = std::chrono::milliseconds(1'000);
constexpr int StorePatience = 1'000;

}  // namespace

SubmissionBox::SubmissionBox(const std::filesystem::path& folder) : m_Store(folder, ServiceStore::Opening::Existing) {
    m_Store.Patience(StorePatience);
    // A client deletes what we have acknowledged, so that must have reached the disk.
    m_Store.Run("PRAGMA synchronous=FULL");
}

std::unique_lock<std::timed_mutex> SubmissionBox::Turn() {
    std::unique_lock turn(m_Mutex, TurnPatience);
    if (!turn) throw StoreError("too many submissions at a time");
    return turn;
}

Submissions::Taken SubmissionBox::Take(const Submission& submission) {
    const auto turn = Turn();
    return Submissions(m_Store).Add(submission);
}

Text SubmissionBox::StatusLines(const std::vector<TextView>& ids) {
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
