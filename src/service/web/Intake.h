// What clients post, on its way into the store.
// Threads: any.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "base/log.h"
#include "service/store/Reports.h"
#include "service/store/ServiceStore.h"
#include "service/store/Submissions.h"

namespace tb {

// Takes clients' reports and stores them behind their backs, many at a time, so that no client waits while an import
// holds the store.
class ReportQueue {
public:
    // Raises a StoreError when the store cannot be opened. `log` must outlive the queue.
    ReportQueue(const std::filesystem::path& folder, LogSink& log);
    ReportQueue(const ReportQueue&) = delete;
    ReportQueue& operator=(const ReportQueue&) = delete;
    // Stores what it still has.
    ~ReportQueue();

    // False when too many wait to be stored. A report that cannot be stored later is lost, with a line in the log.
    bool Take(VersionReport report);

private:
    void Keep();

    LogSink& m_Log;
    ServiceStore m_Store;
    std::mutex m_Mutex;
    std::condition_variable m_Wake;
    std::vector<VersionReport> m_Waiting;
    bool m_Stop = false;
    std::thread m_Keeper;
};

// Takes submissions and tells what became of them. Clients wait for it only a moment each, so that they get an answer
// before they give up, whatever else works on the store.
class SubmissionIntake {
public:
    // Raises a StoreError when the store cannot be opened.
    explicit SubmissionIntake(const std::filesystem::path& folder);

    // The submission is on the disk when this returns. Raises a StoreError when it was not stored: the disk is full, or
    // others kept the store busy too long.
    Submissions::Taken Take(const Submission& submission);

    // A line "identifier=status,disposition" and a line feed for each of the identifiers that is known, once each, in
    // order. Raises a StoreError when the store cannot be read.
    Text StatusLines(const std::vector<TextView>& ids);

private:
    std::unique_lock<std::timed_mutex> Turn();

    std::timed_mutex m_Mutex;
    ServiceStore m_Store;
};

}  // namespace tb
