// What the service answers: a table of pages, each with its path, its methods and the function that answers. A new page
// is a new row; nothing here knows how requests travel.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "base/text.h"

namespace tb {

struct Question {
    // "GET" or "POST"; what answers GET answers HEAD, whose reply is sent without its body.
    Text Method;
    Text Path;
    // Of a POST, as it came.
    Text Body;
};

struct Reply {
    int Status = 200;
    Text ContentType;
    // Shared between replies and never changed.
    std::shared_ptr<const Text> Body;
    // The value of the header "Last-Modified"; none when empty.
    Text LastModified;
};

// A reply of one line of plain text, for whoever reads it.
inline Reply PlainReply(int status, const Text& line) {
    return {status, "text/plain", std::make_shared<const Text>(line + "\n"), {}};
}
// A frame.
inline Reply FramedReply(std::shared_ptr<const Text> frame) {
    return {200, "application/octet-stream", std::move(frame), {}};
}

struct Page {
    Text Path;
    bool TakesGet = false;
    bool TakesPost = false;
    // Bytes of the longest body.
    size_t BodyLimit = 0;
    // Called by many threads at a time. What it raises becomes the status 500 and a line in the log.
    std::function<Reply(const Question&)> Answer;
    // Where it is set, the page answers all paths for which it is true, and none by its own Path.
    std::function<bool(const Text& path)> Owns = {};
};
using Pages = std::vector<Page>;

}  // namespace tb
