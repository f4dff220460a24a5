#include "service/LoopbackHttp.h"

#include <chrono>
#include <exception>

#include <httplib.h>

namespace tb {

namespace {

Text HeadOf(const httplib::Response& answer) {
    Text head = answer.version + " " + std::to_string(answer.status) + " " + answer.reason + "\r\n";
    for (const auto& [name, value] : answer.headers) head.append(name).append(": ").append(value).append("\r\n");
    return head;
}

// Host and port of an absolute address, with the scheme; what follows is the path.
size_t PathStart(const Text& url) { return url.find('/', url.find("://") + 3); }

}  // namespace

Text LoopbackHttp::Exchange(const HttpRequest& request, HttpResponse& response, const BodySink& body) {
    const size_t path = PathStart(request.Url);
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
    sent.response_handler = [&](const httplib::Response& answer) {
        response = {answer.status, HeadOf(answer)};
        return true;
    };
    // What the sink raises must not pass through the library.
    std::exception_ptr raised;
    bool isTooLong = false;
    std::uint64_t taken = 0;
    sent.content_receiver = [&](const char* bytes, size_t count, std::uint64_t, std::uint64_t) {
        isTooLong = (taken += count) > request.BodyLimit;
        if (isTooLong || (request.IsCancelled && request.IsCancelled())) return false;
        try {
            body(TextView(bytes, count));
        } catch (...) {
            raised = std::current_exception();
        }
        return raised == nullptr;
    };
    const httplib::Result result = client.send(sent);
    if (raised) std::rethrow_exception(raised);
    if (isTooLong) return "the reply is too long";
    return result ? Text() : httplib::to_string(result.error());
}

}  // namespace tb
