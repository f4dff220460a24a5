// Serves pages over HTTP/1.1 on one or several addresses.
#pragma once

#include <memory>

#include "base/log.h"
#include "service/web/Page.h"

namespace tb {

class HttpServer {
public:
    // `log` gets a line for every request that ends in an error of ours; it must outlive the server.
    HttpServer(Pages pages, LogSink& log);
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;
    ~HttpServer();

    // Listens on all addresses, one port; 0 takes one that is free on all of them. Returns the port; requests are
    // answered from now on. Raises an InputError that tells which address cannot be listened on and why, and listens
    // nowhere then. Called once.
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
