#include "service/web/ConnectionThreads.h"

#include <system_error>
#include <utility>

namespace tb {

namespace {

constexpr auto RoomInterval = std::chrono::milliseconds(20);

}  // namespace

void ConnectionThreads::Run(std::function<void()> job) {
    std::unique_lock lock(m_Mutex);
    while (!m_Stop && m_Jobs.size() >= m_Free && m_Threads.size() >= m_Limit) {
        MakeRoom();
        m_ThreadBecameFree.wait_for(lock, RoomInterval);
    }
    if (m_Stop) {
        lock.unlock();
        return job();
    }
    m_Jobs.push_back(std::move(job));
    if (m_Jobs.size() > m_Free) StartThread();
    lock.unlock();
    m_JobCame.notify_one();
}

void ConnectionThreads::StartThread() {
    try {
        m_Threads.emplace_back([this] { Work(); });
        ++m_Free;
    } catch (const std::system_error&) {
        // The job waits for one of those that are there.
        if (m_Threads.empty()) throw;
    }
}

void ConnectionThreads::Work() {
    std::unique_lock lock(m_Mutex);
    for (;;) {
        m_JobCame.wait(lock, [this] { return m_Stop || !m_Jobs.empty(); });
        if (m_Jobs.empty()) return;
        const std::function<void()> job = std::move(m_Jobs.front());
        m_Jobs.pop_front();
        --m_Free;
        lock.unlock();
        job();
        lock.lock();
        ++m_Free;
        m_ThreadBecameFree.notify_all();
    }
}

// With nobody behind, a burst of good peers, they just wait for each other.
void ConnectionThreads::MakeRoom() {
    for (Served* connection : m_Connections) {
        if (connection->IsBehind()) connection->Abort();
    }
}

void ConnectionThreads::Enter(Served& connection) {
    const std::lock_guard lock(m_Mutex);
    m_Connections.insert(&connection);
    if (m_Stop) connection.Abort();
}

void ConnectionThreads::Leave(Served& connection) {
    const std::lock_guard lock(m_Mutex);
    m_Connections.erase(&connection);
}

bool ConnectionThreads::IsCrowded() {
    const std::lock_guard lock(m_Mutex);
    return m_Stop || m_Connections.size() > m_Limit / 2;
}

bool ConnectionThreads::IsStopped() {
    const std::lock_guard lock(m_Mutex);
    return m_Stop;
}

void ConnectionThreads::Stop(std::chrono::milliseconds grace) {
    std::unique_lock lock(m_Mutex);
    m_Stop = true;
    for (Served* connection : m_Connections) {
        if (connection->IsIdle()) connection->Abort();
    }
    m_JobCame.notify_all();
    m_ThreadBecameFree.notify_all();
    m_ThreadBecameFree.wait_for(lock, grace, [this] { return m_Free == m_Threads.size(); });
    for (Served* connection : m_Connections) connection->Abort();
    std::vector<std::thread> threads = std::exchange(m_Threads, {});
    m_Free = 0;
    lock.unlock();
    for (std::thread& thread : threads) thread.join();
}

}  // namespace tb
