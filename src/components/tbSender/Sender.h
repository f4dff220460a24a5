// The transport of all web traffic: one request to one server of a service. A service is an element whose children
// "Server" carry WEIGHT (share in per cent), ACTIVE ("Y" when in use) and a base URL as text.
// Thread: the user-interface thread; a call returns when the exchange is over, with messages served meanwhile.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>

#include "base/text.h"
#include "components/tbXML/Element.h"

namespace tb {

// The headers of a response.
struct ResponseHead {
    // All of them as one text, each line with CR LF; empty when no server answered.
    tb::Text Text;
};

class Sender {
public:
    static constexpr std::int32_t DefaultTimeout = 3000;
    // Bytes of a reply: of one that carries data, and of one that only answers.
    static constexpr std::uint64_t DataReplyLimit = 256ull << 20;
    static constexpr std::uint64_t SmallReplyLimit = 1ull << 20;

    virtual ~Sender() = default;

    // Limit of each wait for a server, in milliseconds.
    virtual std::int32_t Timeout() const = 0;
    virtual void Timeout(std::int32_t milliseconds) = 0;
    // The client's identifier, sent along as a header.
    virtual void Key(const Text& key) = 0;
    // A longer reply is that server's failure. DataReplyLimit unless set.
    virtual void ReplyLimit(std::uint64_t bytes) = 0;

    // Posts the body, which may be empty, to `Page` below a server's base URL. Empty when a server has taken it, with
    // its answer in `Reply`; else an error text, with `Reply` empty. `Extra` is always empty.
    virtual Text PostRequest(const ElementPtr& Server, const Text& Page, const Text& Body, Text& Reply,
                             const Text& Extra) = 0;
    // Fetches the headers for `Page`.
    virtual void GetHead(const ElementPtr& Server, const Text& Page, const Text& Extra, ResponseHead& Head) = 0;
    // Stores the answer as the file `Target`, which is the old or the whole new one. Empty, or an error text.
    virtual Text DownloadFile(const ElementPtr& Server, const Text& Page, const Text& Extra,
                              const std::filesystem::path& Target) = 0;
    // False when the system knows that it has no network.
    virtual bool IsOnline() = 0;
};

using SenderFactory = std::function<std::unique_ptr<Sender>()>;

}  // namespace tb
