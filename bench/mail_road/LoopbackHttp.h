// The program's transport on this machine: plain HTTP, a connection for each exchange, no messages served meanwhile,
// and replies as a whole.
#pragma once

#include <httplib.h>

#include "platform/Http.h"

namespace tb {

class LoopbackHttp : public Http {
public:
    Text Exchange(const HttpRequest& request, HttpResponse& response, const BodySink& body) override {
        const size_t path = request.Url.find('/', request.Url.find("://") + 3);
        httplib::Client client(request.Url.substr(0, path));
        const std::chrono::milliseconds wait(request.WaitMilliseconds);
        client.set_connection_timeout(wait);
        client.set_read_timeout(wait);
        client.set_write_timeout(wait);
        httplib::Request sent;
        sent.method = request.Method;
        sent.path = path == Text::npos ? "/" : request.Url.substr(path);
        for (const auto& [name, value] : request.Headers) sent.headers.emplace(name, value);
        sent.body = request.Body;
        const httplib::Result answer = client.send(sent);
        if (!answer) return httplib::to_string(answer.error());
        response.Status = answer->status;
        if (answer->body.size() > request.BodyLimit) return "the reply is too long";
        body(answer->body);
        return {};
    }
    bool IsConnected() override { return true; }
};

}  // namespace tb
