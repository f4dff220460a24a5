#include "windows/LoopbackServer.h"

#include <algorithm>
#include <stdexcept>

namespace tb {

namespace {

constexpr DWORD PollMs = 20;
// What the first record of a secure connection begins with.
constexpr TextView TlsHello = "\x16\x03";

SOCKET NewSocket() {
    static const bool started = [] {
        WSADATA data;
        return WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }();
    const SOCKET made = started ? socket(AF_INET, SOCK_STREAM, 0) : INVALID_SOCKET;
    if (made == INVALID_SOCKET) throw std::runtime_error("no socket");
    return made;
}

sockaddr_in Loopback(u_short port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

bool IsReadable(SOCKET socket, DWORD milliseconds) {
    fd_set one;
    FD_ZERO(&one);
    FD_SET(socket, &one);
    timeval limit{0, static_cast<long>(milliseconds) * 1000};
    return select(0, &one, nullptr, nullptr, &limit) == 1;
}

// Bytes that the head says are behind it.
size_t BodyLength(const Text& head) {
    const size_t found = head.find("Content-Length: ");
    return found == Text::npos ? 0 : std::stoul(head.substr(found + 16));
}

}  // namespace

bool LoopbackServer::Connection::Send(TextView bytes) const {
    while (!bytes.empty()) {
        const int sent = send(m_Socket, bytes.data(), static_cast<int>(bytes.size()), 0);
        if (sent <= 0) return false;
        bytes.remove_prefix(static_cast<size_t>(sent));
    }
    return true;
}

bool LoopbackServer::Connection::Pause(DWORD milliseconds) const {
    return WaitForSingleObject(m_Server.m_Stop, milliseconds) == WAIT_TIMEOUT;
}

void LoopbackServer::Connection::Hang() const {
    char rest[256];
    while (Pause(0)) {
        if (IsReadable(m_Socket, PollMs) && recv(m_Socket, rest, sizeof rest, 0) <= 0) return;
    }
}

LoopbackServer::LoopbackServer(Behaviour behaviour, u_short firstPort, u_short lastPort)
    : m_Behaviour(std::move(behaviour)), m_Listener(NewSocket()), m_Stop(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    sockaddr_in address = Loopback(firstPort);
    int size = sizeof address;
    bool isBound = bind(m_Listener, reinterpret_cast<sockaddr*>(&address), size) == 0;
    for (u_short port = firstPort; !isBound && port < lastPort;) {
        address = Loopback(++port);
        isBound = bind(m_Listener, reinterpret_cast<sockaddr*>(&address), size) == 0;
    }
    if (!isBound || listen(m_Listener, SOMAXCONN) != 0 ||
        getsockname(m_Listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        throw std::runtime_error("no listening socket");
    }
    m_Port = ntohs(address.sin_port);
    m_Acceptor = std::thread([this] { Accept(); });
}

LoopbackServer::~LoopbackServer() {
    SetEvent(m_Stop);
    m_Acceptor.join();
    for (std::thread& thread : m_Threads) thread.join();
    closesocket(m_Listener);
    CloseHandle(m_Stop);
}

void LoopbackServer::Accept() {
    while (WaitForSingleObject(m_Stop, 0) == WAIT_TIMEOUT) {
        if (!IsReadable(m_Listener, PollMs)) continue;
        const SOCKET socket = accept(m_Listener, nullptr, nullptr);
        if (socket != INVALID_SOCKET) m_Threads.emplace_back([this, socket] { Serve(socket); });
    }
}

void LoopbackServer::Serve(SOCKET socket) {
    Text request;
    char piece[16384];
    const auto isWhole = [&] {
        if (request.starts_with(TlsHello)) return true;
        const size_t end = request.find("\r\n\r\n");
        return end != Text::npos && request.size() >= end + 4 + BodyLength(request.substr(0, end));
    };
    while (!isWhole() && WaitForSingleObject(m_Stop, 0) == WAIT_TIMEOUT) {
        if (!IsReadable(socket, PollMs)) continue;
        const int count = recv(socket, piece, sizeof piece, 0);
        if (count <= 0) break;
        request.append(piece, static_cast<size_t>(count));
    }
    {
        const std::lock_guard lock(m_Lock);
        m_Requests.push_back(request);
    }
    m_Behaviour(Connection(*this, socket), request);
    shutdown(socket, SD_SEND);
    closesocket(socket);
}

Text LoopbackServer::Url(TextView page, TextView scheme) const {
    return Text(scheme) + "://127.0.0.1:" + std::to_string(m_Port) + Text(page);
}

std::vector<Text> LoopbackServer::Requests() const {
    const std::lock_guard lock(m_Lock);
    return m_Requests;
}

}  // namespace tb
