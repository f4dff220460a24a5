#include "service/web/Connection.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace tb {

namespace {

constexpr size_t HeadLimit = 65536;
constexpr size_t ReceiveSize = 16384;
// Replies up to here go out in one piece with their head.
constexpr size_t SendSize = 32768;
constexpr size_t PieceSize = 262144;
constexpr std::int64_t BeginSize = 65536;
constexpr std::int64_t ReadOverLimit = 1 << 20;

// Less than what is under way between good peers, so that its shrinking shows how fast they read.
constexpr int SocketBufferSize = 262'144;

// All times in milliseconds. A peer that keeps up with this pace is never behind; being ahead earns it nothing.
constexpr std::int64_t BytesPerMillisecond = 16;

struct Limits {
    // How far the peer may fall behind, and how long the phase may last.
    std::int64_t Patience;
    std::int64_t Whole;
};

// By phase: Idle, Reading, Writing (a client has given up after ten minutes), Leaving.
constexpr Limits PhaseLimits[] = {{5'000, 5'000}, {10'000, 600'000}, {30'000, 600'000}, {1'000, 1'000}};
// Whoever has used up this part of the patience makes room when room is short.
constexpr std::int64_t PatiencePart = 10;

std::int64_t Now() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

}  // namespace

Connection::Connection(int socket, std::mutex& turns) : m_Socket(socket), m_Turns(turns) {
    const int on = 1;
    ::setsockopt(m_Socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    ::setsockopt(m_Socket, SOL_SOCKET, SO_SNDBUF, &SocketBufferSize, sizeof SocketBufferSize);
}

Connection::~Connection() { ::close(m_Socket); }

void Connection::Enter(Phase phase) {
    m_Phase = phase;
    m_LevelAt = m_Began = Now();
    m_Moved = 0;
}

void Connection::HasMoved(ssize_t bytes) {
    m_Moved += bytes;
    m_LevelAt = std::min(Now(), m_LevelAt + bytes / BytesPerMillisecond);
}

bool Connection::IsBehind() const {
    const Limits& limits = PhaseLimits[static_cast<size_t>(m_Phase.load())];
    return m_IsWaiting && Now() - m_LevelAt >= limits.Patience / PatiencePart;
}

std::int64_t Connection::TimeLeft() const {
    const Limits& limits = PhaseLimits[static_cast<size_t>(m_Phase.load())];
    return std::min(m_LevelAt + limits.Patience, m_Began + limits.Whole) - Now();
}

void Connection::Abort() {
    m_IsAborted = true;
    ::shutdown(m_Socket, SHUT_RDWR);
}

bool Connection::WaitFor(short event) {
    while (!m_IsAborted) {
        const std::int64_t left = TimeLeft();
        if (left <= 0) return false;
        pollfd wait{m_Socket, event, 0};
        m_IsWaiting = true;
        const int ready = ::poll(&wait, 1, static_cast<int>(left));
        m_IsWaiting = false;
        if (ready > 0) return true;
        if (ready < 0 && errno != EINTR) return false;
    }
    return false;
}

bool Connection::AwaitRequest(ConnectionThreads& threads) {
    m_HeadLeft = HeadLimit;
    if (m_Taken == m_Received.size()) {
        Enter(Phase::Idle);
        // A stop that comes from now on finds it idle.
        if (threads.IsStopped() || !Fill()) return false;
    }
    Enter(Phase::Reading);
    return true;
}

// More bytes behind those that are taken. False at the end, after a failure and when the peer took too long.
bool Connection::Fill() {
    m_Received.resize(ReceiveSize);
    m_Taken = 0;
    ssize_t count = -1;
    do {
        count = ::recv(m_Socket, m_Received.data(), m_Received.size(), MSG_DONTWAIT);
    } while (count < 0 && (errno == EINTR || ((errno == EAGAIN || errno == EWOULDBLOCK) && WaitFor(POLLIN))));
    m_Received.resize(count > 0 ? static_cast<size_t>(count) : 0);
    if (count > 0) HasMoved(count);
    return count > 0;
}

ssize_t Connection::read(char* buffer, size_t size) {
    // The peer may wait for a word before it sends its body.
    if (!m_ToSend.empty() && !Flush()) return -1;
    if (m_Taken == m_Received.size()) {
        if (m_Phase != Phase::Reading) Enter(Phase::Reading);
        if (!Fill()) return -1;
    }
    const size_t count = std::min({size, m_Received.size() - m_Taken, m_HeadLeft});
    if (count == 0) return -1;
    std::copy_n(m_Received.data() + m_Taken, count, buffer);
    m_Taken += count;
    if (m_HeadLeft != NoLimit) m_HeadLeft -= count;
    return static_cast<ssize_t>(count);
}

ssize_t Connection::write(const char* bytes, size_t size) {
    if (m_ToSend.size() + size <= SendSize) {
        m_ToSend.append(bytes, size);
    } else if (!Flush() || !Send({bytes, size})) {
        return -1;
    }
    return static_cast<ssize_t>(size);
}

bool Connection::Flush() {
    const bool sent = Send(m_ToSend);
    m_ToSend.clear();
    return sent;
}

bool Connection::Send(TextView bytes) {
    if (m_Phase != Phase::Writing) Enter(Phase::Writing);
    while (!bytes.empty()) {
        const ssize_t count = SendPiece(bytes);
        if (count > 0) {
            bytes.remove_prefix(static_cast<size_t>(count));
            HasMoved(count);
            continue;
        }
        const bool mayWait = errno == EAGAIN || errno == EWOULDBLOCK;
        if (errno != EINTR && !(mayWait && WaitFor(POLLOUT))) return false;
    }
    return true;
}

ssize_t Connection::SendPiece(TextView bytes) {
    bytes = bytes.substr(0, PieceSize);
    std::unique_lock turn(m_Turns, std::defer_lock);
    // What makes a reply begin goes out at once.
    if (m_Moved >= BeginSize) turn.lock();
    return ::send(m_Socket, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
}

void Connection::ReadOver() {
    ::shutdown(m_Socket, SHUT_WR);
    Enter(Phase::Leaving);
    while (m_Moved < ReadOverLimit && Fill()) {
    }
}

void Connection::get_remote_ip_and_port(std::string& ip, int& port) const {
    ip.clear();
    port = 0;
}
void Connection::get_local_ip_and_port(std::string& ip, int& port) const { get_remote_ip_and_port(ip, port); }

}  // namespace tb
