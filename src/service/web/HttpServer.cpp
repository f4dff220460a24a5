#include "service/web/HttpServer.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <thread>

#include "base/errors.h"
#include "service/web/Connection.h"
#include "service/web/ConnectionThreads.h"
#include "service/web/RequestCheck.h"

namespace tb {

namespace {

constexpr size_t MostConnections = 256;
constexpr int MostRequests = 1'000;
constexpr int Backlog = 1'024;
constexpr auto StopGrace = std::chrono::seconds(5);
// Attempts to find a port that is free on all addresses.
constexpr int PortAttempts = 50;

void Fill(httplib::Response& response, const Reply& reply) {
    response.status = reply.Status;
    if (!reply.LastModified.empty()) response.set_header("Last-Modified", reply.LastModified);
    if (!reply.Body || reply.Body->empty()) return response.set_content("", reply.ContentType);
    // The library sends the shared bytes themselves.
    response.set_content_provider(reply.Body->size(), reply.ContentType,
                                  [body = reply.Body](size_t offset, size_t length, httplib::DataSink& sink) {
                                      return sink.write(body->data() + offset, length);
                                  });
}

Text TextOf(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& known) {
        return known.what();
    } catch (...) {
        return "no standard error";
    }
}

// Of one listener, for all its connections.
class SharedThreads : public httplib::TaskQueue {
public:
    explicit SharedThreads(ConnectionThreads& threads) : m_Threads(threads) {}
    void enqueue(std::function<void()> job) override { m_Threads.Run(std::move(job)); }
    void shutdown() override {}

private:
    ConnectionThreads& m_Threads;
};

}  // namespace

// One address. The library accepts connections, parses requests and writes replies; each connection's life is here.
class HttpServer::Listener : public httplib::Server {
public:
    Listener(const Pages& pages, ConnectionThreads& threads, LogSink& log);
    ~Listener() override { Close(); }

    // Holds the address; returns its port. Connections wait until Run.
    int Open(const Text& address, int port);
    void Run();
    void Close();

private:
    bool process_and_close_socket(socket_t socket) override;
    void Serve(Connection& connection);
    bool ServeOne(Connection& connection, bool isLast);
    void AnswerPost(const httplib::Request& request, httplib::Response& response, const httplib::ContentReader& read);
    HandlerResponse Route(const httplib::Request& request, httplib::Response& response);

    const Pages& m_Pages;
    ConnectionThreads& m_Threads;
    LogSink& m_Log;
    std::thread m_Thread;
};

struct HttpServer::Inside {
    Inside(Pages pages, LogSink& log) : ServedPages(std::move(pages)), Log(log) {}

    const Pages ServedPages;
    LogSink& Log;
    ConnectionThreads Threads{MostConnections};
    std::vector<std::unique_ptr<Listener>> Listeners;
};

HttpServer::Listener::Listener(const Pages& pages, ConnectionThreads& threads, LogSink& log)
    : m_Pages(pages), m_Threads(threads), m_Log(log) {
    new_task_queue = [this] { return new SharedThreads(m_Threads); };
    // Two services on one port would share its connections at random, so the library's own choice will not do.
    set_socket_options([](socket_t socket) {
        const int on = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    });
    set_keep_alive_max_count(MostRequests);
    set_pre_routing_handler([this](const auto& request, auto& response) { return Route(request, response); });
    Post(".*", [this](const httplib::Request& request, httplib::Response& response,
                      const httplib::ContentReader& read) { AnswerPost(request, response, read); });
    set_error_handler([](const httplib::Request&, httplib::Response& response) {
        if (response.body.empty() && !response.content_provider_) {
            response.set_content("The request cannot be read.\n", "text/plain");
        }
    });
    set_exception_handler([this](const auto& request, auto& response, const std::exception_ptr& error) {
        m_Log.WriteLog(request.method + " " + Quoted(request.path) + ": " + TextOf(error), LogLevel::Always);
        Fill(response, PlainReply(500, "The service has a problem; its log tells which."));
    });
}

int HttpServer::Listener::Open(const Text& address, int port) {
    errno = 0;
    const int bound = port == 0 ? bind_to_any_port(address) : (bind_to_port(address, port) ? port : -1);
    if (bound < 0) {
        const Text reason = errno == 0 ? "no such address" : std::strerror(errno);
        throw InputError("cannot listen on " + address + " port " + std::to_string(port) + ": " + reason);
    }
    // The library lets five connections wait.
    ::listen(svr_sock_, Backlog);
    return bound;
}

void HttpServer::Listener::Run() {
    m_Thread = std::thread([this] { listen_after_bind(); });
    // It cannot be stopped before it runs.
    while (!is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void HttpServer::Listener::Close() {
    if (m_Thread.joinable()) {
        stop();
        m_Thread.join();
    }
    // One that never ran.
    const socket_t socket = svr_sock_.exchange(-1);
    if (socket >= 0) ::close(socket);
}

bool HttpServer::Listener::process_and_close_socket(socket_t socket) {
    Connection connection(socket, m_Threads.Turns());
    m_Threads.Enter(connection);
    try {
        Serve(connection);
    } catch (...) {
        m_Log.WriteLog("a connection: " + TextOf(std::current_exception()), LogLevel::Always);
    }
    m_Threads.Leave(connection);
    return true;
}

void HttpServer::Listener::Serve(Connection& connection) {
    for (int served = 1; connection.AwaitRequest(m_Threads); ++served) {
        if (!ServeOne(connection, served == MostRequests || m_Threads.IsCrowded())) return;
    }
}

// True when another request may follow on the connection.
bool HttpServer::Listener::ServeOne(Connection& connection, bool isLast) {
    // What follows on the connection is the rest of this request, not another one.
    bool isUnread = true;
    const auto look = [&](httplib::Request& request) {
        connection.BeginBody();
        // Always the whole: a reply is one frame.
        request.ranges.clear();
        Text allow;
        isUnread = HasBody(request) && (request.method != "POST" || Refuse(m_Pages, request, allow));
        if (!isUnread) return;
        request.headers.erase("Connection");
        request.set_header("Connection", "close");
    };
    bool isClosed = false;
    const bool wasAnswered = process_request(connection, isLast, isClosed, look);
    const bool wasSent = connection.Flush();
    if (isUnread && wasSent) connection.ReadOver();
    return wasAnswered && wasSent && !isUnread && !isClosed && !isLast;
}

httplib::Server::HandlerResponse HttpServer::Listener::Route(const httplib::Request& request,
                                                             httplib::Response& response) {
    Text allow;
    if (const auto refusal = Refuse(m_Pages, request, allow)) {
        if (!allow.empty()) response.set_header("Allow", allow);
        Fill(response, *refusal);
        return HandlerResponse::Handled;
    }
    if (request.method == "POST") return HandlerResponse::Unhandled;
    Fill(response, FindPage(m_Pages, request.path)->Answer({"GET", request.path, {}}));
    return HandlerResponse::Handled;
}

void HttpServer::Listener::AnswerPost(const httplib::Request& request, httplib::Response& response,
                                      const httplib::ContentReader& read) {
    Question question{"POST", request.path, {}};
    // Without a length there is no body, while the library would read on to the end of the connection.
    const bool isWhole = !HasBody(request) || read([&](const char* bytes, size_t size) {
        question.Body.append(bytes, size);
        return true;
    });
    Fill(response,
         isWhole ? FindPage(m_Pages, request.path)->Answer(question) : PlainReply(400, "The body ended too early."));
}

HttpServer::HttpServer(Pages pages, LogSink& log) : m_Inside(std::make_unique<Inside>(std::move(pages), log)) {}

HttpServer::~HttpServer() { Stop(); }

int HttpServer::Open(const std::vector<Text>& addresses, int port) {
    for (const Text& address : addresses) {
        auto listener = std::make_unique<Listener>(m_Inside->ServedPages, m_Inside->Threads, m_Inside->Log);
        port = listener->Open(address, port);
        m_Inside->Listeners.push_back(std::move(listener));
    }
    return port;
}

int HttpServer::Start(const std::vector<Text>& addresses, int port) {
    for (int attempt = 1;; ++attempt) {
        try {
            port = Open(addresses, port);
            break;
        } catch (const RuntimeError&) {
            m_Inside->Listeners.clear();
            // A free port of the first address may be taken on another one.
            if (port != 0 || attempt == PortAttempts) throw;
        }
    }
    for (const auto& listener : m_Inside->Listeners) listener->Run();
    return port;
}

void HttpServer::Stop() {
    for (const auto& listener : m_Inside->Listeners) listener->Close();
    m_Inside->Threads.Stop(StopGrace);
    m_Inside->Listeners.clear();
}

}  // namespace tb
