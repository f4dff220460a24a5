// Takes clients' reports and stores them behind their backs, many at a time, so that no client waits while an import
// holds the store.
// Threads: any.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "base/log.h"
#include "service/store/Reports.h"
#include "service/store/ServiceStore.h"

namespace tb {

class ReportBox {
public:
    // Raises a StoreError when the store cannot be opened. `log` must outlive the box.
    ReportBox(const std::filesystem::path& folder, LogSink& log);
    ReportBox(const ReportBox&) = delete;
    ReportBox& operator=(const ReportBox&) = delete;
    // Stores what it still has.
    ~ReportBox();

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

}  // namespace tb
