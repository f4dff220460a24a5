// One connection as the HTTP library reads and writes it: buffered, and with a limit on the time that its peer may
// take.
#pragma once

#include <httplib.h>

#include <atomic>

#include "base/text.h"
#include "service/web/ConnectionThreads.h"

namespace tb {

class Connection : public httplib::Stream, public Served {
public:
    // Closes the socket in the end. Long replies of all connections with the same `turns` take turns at the processor,
    // so that short ones need not wait behind many of them.
    Connection(int socket, std::mutex& turns);
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() override;

    // Waits for the first byte of a request. False when none came in time, the peer has closed, or the threads have
    // been stopped.
    bool AwaitRequest(ConnectionThreads& threads);
    // The head is read and the body follows, to which the limit of the head does not apply.
    void BeginBody() { m_HeadLeft = NoLimit; }
    // Sends what is buffered. False when it could not be sent.
    bool Flush();
    // What the peer still sends is read over for a moment, so that it gets to see the reply before the end.
    void ReadOver();

    // Of httplib::Stream: the number of bytes, 0 at the end, -1 after a failure or when the peer took too long.
    ssize_t read(char* buffer, size_t size) override;
    ssize_t write(const char* bytes, size_t size) override;
    bool is_readable() const override { return true; }
    bool is_writable() const override { return !m_IsAborted; }
    // Nobody asks for addresses.
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    int socket() const override { return m_Socket; }

    // Of Served, for other threads.
    bool IsBehind() const override;
    bool IsIdle() const override { return m_Phase == Phase::Idle; }
    void Abort() override;

private:
    enum class Phase { Idle, Reading, Writing, Leaving };
    static constexpr size_t NoLimit = static_cast<size_t>(-1);

    void Enter(Phase phase);
    void HasMoved(ssize_t bytes);
    std::int64_t TimeLeft() const;
    bool WaitFor(short event);
    bool Fill();
    bool Send(TextView bytes);
    ssize_t SendPiece(TextView bytes);

    const int m_Socket;
    std::mutex& m_Turns;
    Text m_Received;
    size_t m_Taken = 0;
    Text m_ToSend;
    size_t m_HeadLeft = NoLimit;
    // Times are milliseconds of the steady clock. The present phase began, and its peer has moved so many bytes in it.
    std::int64_t m_Began = 0;
    std::int64_t m_Moved = 0;
    std::atomic<Phase> m_Phase = Phase::Idle;
    // What the peer has moved by now is what it should have by this moment.
    std::atomic<std::int64_t> m_LevelAt = 0;
    std::atomic<bool> m_IsWaiting = false;
    std::atomic<bool> m_IsAborted = false;
};

}  // namespace tb
