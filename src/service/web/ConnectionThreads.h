// The threads that serve connections: one connection a thread, as many as come up to a limit, kept for the next ones.
// When all are taken, peers who are behind lose their places to newcomers, so that those who send or read slowly, or
// not at all, cannot keep others out.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace tb {

// A connection as seen from outside its thread.
class Served {
public:
    virtual ~Served() = default;
    // True when its peer has been waited for a good while longer than what it sent or took should need.
    virtual bool IsBehind() const = 0;
    // True when the peer is waited for to begin a request: nobody loses an answer by an end now.
    virtual bool IsIdle() const = 0;
    // Ends the wait for the peer, now and later.
    virtual void Abort() = 0;
};

class ConnectionThreads {
public:
    explicit ConnectionThreads(size_t limit) : m_Limit(limit) {}
    ConnectionThreads(const ConnectionThreads&) = delete;
    ConnectionThreads& operator=(const ConnectionThreads&) = delete;
    ~ConnectionThreads() { Stop(std::chrono::seconds(0)); }

    // Has a thread run the job, which serves one connection; waits until there is one. After Stop the job runs within
    // the call. The job must not throw.
    void Run(std::function<void()> job);

    // Between these a connection can be aborted for another.
    void Enter(Served& connection);
    void Leave(Served& connection);

    // Whether connections should make room instead of waiting for a further request; always after Stop.
    bool IsCrowded();

    // Held by the one that sends a piece of a long reply.
    std::mutex& Turns() { return m_Turns; }

    bool IsStopped();
    // Aborts those that are idle, the others after `grace`; returns when all threads have ended.
    void Stop(std::chrono::milliseconds grace);

private:
    void Work();
    void StartThread();
    void MakeRoom();

    const size_t m_Limit;
    std::mutex m_Turns;
    std::mutex m_Mutex;
    std::condition_variable m_JobCame;
    std::condition_variable m_ThreadBecameFree;
    std::deque<std::function<void()>> m_Jobs;
    std::set<Served*> m_Connections;
    std::vector<std::thread> m_Threads;
    // Threads that have no job.
    size_t m_Free = 0;
    bool m_Stop = false;
};

}  // namespace tb
