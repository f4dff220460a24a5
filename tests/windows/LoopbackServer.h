// A web server of a test's own on 127.0.0.1 that behaves as the test says, badly for the most part.
#pragma once

#include <winsock2.h>
// In this order only.
#include <windows.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

#include "base/text.h"

namespace tb {

class LoopbackServer {
public:
    // The server's side of one connection.
    class Connection {
    public:
        Connection(const LoopbackServer& server, SOCKET socket) : m_Server(server), m_Socket(socket) {}
        // False once the client has closed the connection.
        bool Send(TextView bytes) const {
            const int size = static_cast<int>(bytes.size());
            return send(m_Socket, bytes.data(), size, 0) == size;
        }
        // Until the client sends more or closes the connection, or the server goes; does `meanwhile` again and again.
        void Idle(const std::function<void()>& meanwhile) const {
            WSAPOLLFD more{m_Socket, POLLRDNORM, 0};
            while (!m_Server.m_IsOver && WSAPoll(&more, 1, 1) == 0) meanwhile();
        }

    private:
        const LoopbackServer& m_Server;
        SOCKET m_Socket;
    };
    // Runs for each request, on a thread of its own; the connection is closed when it returns.
    using Behaviour = std::function<void(const Connection& connection, const Text& request)>;

    explicit LoopbackServer(Behaviour behaviour) : m_Behaviour(std::move(behaviour)) {
        WSADATA data;
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        int size = sizeof address;
        auto* const any = reinterpret_cast<sockaddr*>(&address);
        if (WSAStartup(MAKEWORD(2, 2), &data) != 0 ||
            (m_Listener = socket(AF_INET, SOCK_STREAM, 0)) == INVALID_SOCKET || bind(m_Listener, any, size) != 0 ||
            listen(m_Listener, SOMAXCONN) != 0 || getsockname(m_Listener, any, &size) != 0) {
            throw std::runtime_error("no listening socket");
        }
        m_Port = ntohs(address.sin_port);
        m_Acceptor = std::thread([this] { Accept(); });
    }
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;
    ~LoopbackServer() {
        m_IsOver = true;
        m_Acceptor.join();
        for (std::thread& thread : m_Threads) thread.join();
        closesocket(m_Listener);
    }

    Text Url(TextView page, TextView scheme = "http") const {
        return Text(scheme) + "://127.0.0.1:" + std::to_string(m_Port) + Text(page);
    }
    // All that have come, head and body.
    std::vector<Text> Requests() const {
        const std::lock_guard lock(m_Lock);
        return m_Requests;
    }

private:
    static constexpr int PollMs = 20;

    void Accept() {
        while (!m_IsOver) {
            WSAPOLLFD listener{m_Listener, POLLRDNORM, 0};
            if (WSAPoll(&listener, 1, PollMs) != 1) continue;
            m_Threads.emplace_back([this, socket = accept(m_Listener, nullptr, nullptr)] { Serve(socket); });
        }
    }

    // A whole request, or the first record of a secure connection.
    static bool IsWhole(const Text& request) {
        const size_t end = request.find("\r\n\r\n");
        if (end == Text::npos) return request.starts_with("\x16\x03");
        const size_t length = request.find("Content-Length: ");
        return request.size() >= end + 4 + (length < end ? std::stoul(request.substr(length + 16)) : 0);
    }

    void Serve(SOCKET socket) {
        const Connection client(*this, socket);
        Text request;
        char piece[16384];
        for (int count = 1; count > 0 && !IsWhole(request);) {
            client.Idle([] {});
            count = m_IsOver ? 0 : recv(socket, piece, sizeof piece, 0);
            if (count > 0) request.append(piece, static_cast<size_t>(count));
        }
        {
            const std::lock_guard lock(m_Lock);
            m_Requests.push_back(request);
        }
        m_Behaviour(client, request);
        shutdown(socket, SD_SEND);
        closesocket(socket);
    }

    Behaviour m_Behaviour;
    SOCKET m_Listener = INVALID_SOCKET;
    u_short m_Port = 0;
    std::atomic<bool> m_IsOver = false;
    mutable std::mutex m_Lock;
    std::vector<Text> m_Requests;
    std::vector<std::thread> m_Threads;
    std::thread m_Acceptor;
};

}  // namespace tb
