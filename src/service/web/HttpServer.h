// Serves pages over HTTP/1.1 on one or several addresses.
#pragma once

#include <memory>
#include <stdexcept>

#include "base/log.h"
#include "service/web/Page.h"

namespace tb {

// An address that cannot be listened on; says which one and why.
class ListenError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

class HttpServer {
public:
    // `log` gets a line for every request that ends in an error of ours; it must outlive the server.
    HttpServer(Pages pages, LogSink& log);
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;
    ~HttpServer();

    // Listens on all addresses, one port; 0 takes one that is free on all of them. Returns the port; requests are
    // answered from now on. Raises a ListenError, and listens nowhere then. Called once.
    int Start(const std::vector<Text>& addresses, int port);
    // Ends what waits for requests, gives replies under way some seconds, and returns when nothing runs any more.
    void Stop();

private:
    class Listener;
    struct Inside;

    int Open(const std::vector<Text>& addresses, int port);

    std::unique_ptr<Inside> m_Inside;
};

}  // namespace tb
