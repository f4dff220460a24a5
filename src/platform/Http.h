// One exchange with one web server, and whether there is a network at all.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "base/text.h"

namespace tb {

struct HttpRequest {
    // "GET", "HEAD" or "POST".
    Text Method;
    // Absolute, http or https, as it goes onto the wire: without user name, fragment, blanks and control characters.
    Text Url;
    // Names and values beside those that the transport itself sends.
    std::vector<std::pair<Text, Text>> Headers;
    Text Body;
    // Limit of each single wait (name, connection, sending, head, next bytes of the body), and of the whole exchange.
    std::int32_t WaitMilliseconds = 0;
    std::int32_t WholeMilliseconds = 0;
    // A longer body ends the exchange before it is taken in.
    std::uint64_t BodyLimit = 0;
    // Asked again and again while waiting: True ends the exchange at once.
    std::function<bool()> IsCancelled;
};

struct HttpResponse {
    std::int32_t Status = 0;
    // Status line and header lines, each with CR LF.
    Text Head;
};

class Http {
public:
    // Receives the body piece by piece as it arrives, when the response is filled in already. What it raises ends the
    // exchange and reaches the caller.
    using BodySink = std::function<void(TextView bytes)>;

    virtual ~Http() = default;

    // Sends the request and takes the answer in. Redirects are not followed, cookies and credentials neither kept nor
    // sent; a request without a body other than GET and HEAD bears Content-Length 0. Waits with the messages of the
    // thread served, so handlers run inside, and another exchange may begin and end there. Empty when an answer came
    // whole, whatever its status; else what went wrong, as text for the log.
    virtual Text Exchange(const HttpRequest& request, HttpResponse& response, const BodySink& body) = 0;

    // False when the system knows that it has no network.
    virtual bool IsConnected() = 0;
};

}  // namespace tb
