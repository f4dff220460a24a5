#include "service/web/RequestCheck.h"

#include <algorithm>

namespace tb {

namespace {

// Digits that always fit the number they are read into; more of them are too much for every page.
constexpr size_t LengthDigits = 12;

std::optional<Reply> RefuseBody(const Page& page, const httplib::Request& request) {
    if (request.has_header("Transfer-Encoding")) return PlainReply(411, "A body needs a Content-Length.");
    const size_t lengths = request.get_header_value_count("Content-Length");
    if (lengths == 0) return std::nullopt;
    const Text length = request.get_header_value("Content-Length");
    if (lengths > 1 || length.empty() || length.find_first_not_of("0123456789") != Text::npos) {
        return PlainReply(400, "The Content-Length is no number.");
    }
    if (length.size() > LengthDigits || std::stoull(length) > page.BodyLimit) {
        return PlainReply(413, "A body may have " + std::to_string(page.BodyLimit) + " bytes here.");
    }
    if (request.has_header("Content-Encoding") || request.is_multipart_form_data()) {
        return PlainReply(415, "A body is taken plain only.");
    }
    return std::nullopt;
}

}  // namespace

const Page* FindPage(const Pages& pages, const Text& path) {
    const auto found = std::find_if(pages.begin(), pages.end(),
                                    [&](const Page& page) { return page.Owns ? page.Owns(path) : page.Path == path; });
    return found == pages.end() ? nullptr : &*found;
}

std::optional<Reply> Refuse(const Pages& pages, const httplib::Request& request, Text& allow) {
    const Page* page = FindPage(pages, request.path);
    if (page == nullptr) return PlainReply(404, "There is no such page.");
    const bool isGet = request.method == "GET" || request.method == "HEAD";
    if (!(isGet && page->TakesGet) && !(request.method == "POST" && page->TakesPost)) {
        allow = page->TakesGet ? (page->TakesPost ? "GET, HEAD, POST" : "GET, HEAD") : "POST";
        return PlainReply(405, "This page takes " + allow + ".");
    }
    return isGet ? std::nullopt : RefuseBody(*page, request);
}

bool HasBody(const httplib::Request& request) {
    return request.has_header("Transfer-Encoding") ||
           (request.has_header("Content-Length") && request.get_header_value("Content-Length") != "0");
}

}  // namespace tb
