#include "service/web/ReportBox.h"

#include <utility>

namespace tb {

namespace {

constexpr size_t MostWaiting = 10'000;
// Longer than any import takes.
constexpr int Patience = 120'000;

}  // namespace

ReportBox::ReportBox(const std::filesystem::path& folder, LogSink& log)
    : m_Log(log), m_Store(folder, ServiceStore::Opening::Existing) {
    m_Store.Patience(Patience);
    m_Keeper = std::thread([this] { Keep(); });
}

ReportBox::~ReportBox() {
    {
        const std::lock_guard lock(m_Mutex);
        m_Stop = true;
    }
    m_Wake.notify_all();
    m_Keeper.join();
}

bool ReportBox::Take(VersionReport report) {
    {
        const std::lock_guard lock(m_Mutex);
        if (m_Waiting.size() >= MostWaiting) return false;
        m_Waiting.push_back(std::move(report));
    }
    m_Wake.notify_one();
    return true;
}

void ReportBox::Keep() {
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

}  // namespace tb
