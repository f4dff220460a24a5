// A web server of a test's own on 127.0.0.1 that behaves as the test says, badly for the most part.
#pragma once

#include <winsock2.h>
// In this order only.
#include <windows.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "base/text.h"

namespace tb {

class LoopbackServer {
public:
    // The server's side of one connection.
    class Connection {
    public:
        Connection(LoopbackServer& server, SOCKET socket) : m_Server(server), m_Socket(socket) {}
        // False once the client has closed the connection.
        bool Send(TextView bytes) const;
        // False once the server stops.
        bool Pause(DWORD milliseconds) const;
        // Until the client closes the connection or the server stops.
        void Hang() const;

    private:
        LoopbackServer& m_Server;
        SOCKET m_Socket;
    };
    // Runs for each request, on a thread of its own; the connection is closed when it returns.
    using Behaviour = std::function<void(const Connection& connection, const Text& request)>;

    // The port is any free one from `firstPort` to `lastPort`, or of the system's choice.
    explicit LoopbackServer(Behaviour behaviour, u_short firstPort = 0, u_short lastPort = 0);
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;
    ~LoopbackServer();

    u_short Port() const { return m_Port; }
    Text Url(TextView page, TextView scheme = "http") const;
    // All that have come, head and body.
    std::vector<Text> Requests() const;

private:
    void Accept();
    void Serve(SOCKET socket);

    Behaviour m_Behaviour;
    SOCKET m_Listener = INVALID_SOCKET;
    u_short m_Port = 0;
    HANDLE m_Stop = nullptr;
    mutable std::mutex m_Lock;
    std::vector<Text> m_Requests;
    std::vector<std::thread> m_Threads;
    std::thread m_Acceptor;
};

}  // namespace tb
