// The sender of the program: picks a server, asks it over HTTP, goes on to the next one when it fails.
//
// A server counts when its ACTIVE is exactly "Y" and its text, without blanks around it, is an http or https address
// without user name, query or fragment. The first one is drawn in proportion to WEIGHT, the next ones likewise among
// those that remain, each at most once. A WEIGHT that is absent, no number or not above 0 makes a spare, which is asked
// when all others have failed.
//
// A failure is what the transport reports, a reply beyond the limit, and any status outside 200 to 299; redirects are
// not followed. No other server is asked once the exit is asked for, once the time for the whole is over, or when the
// reply cannot be stored here.
#pragma once

#include <chrono>

#include "components/tbSender/Sender.h"
#include "platform/Files.h"
#include "platform/Http.h"
#include "platform/Random.h"

namespace tb {

class tbSender : public Sender {
public:
    // The header that carries the client's identifier. Bytes of it other than visible ASCII, and "%", go as %HH.
    static constexpr TextView KeyHeader = "X-Client-Key";
    // Of one operation with all the servers that it asks.
    static constexpr std::chrono::milliseconds WholeLimit = std::chrono::minutes(10);

    using Clock = std::chrono::steady_clock;
    // All of it outlives the sender and the operations that run.
    struct Parts {
        tb::Http& Http;
        tb::Random& Random;
        tb::Files& Files;
        // True once the exit is asked for.
        std::function<bool()> IsCancelled;
        std::function<Clock::time_point()> Now = &Clock::now;
    };

    explicit tbSender(Parts parts) : m_Parts(std::move(parts)) {}

    // A limit below 1 counts as DefaultTimeout.
    std::int32_t Timeout() const override { return m_Timeout; }
    void Timeout(std::int32_t milliseconds) override { m_Timeout = milliseconds; }
    void Key(const Text& key) override { m_Key = key; }
    void ReplyLimit(std::uint64_t bytes) override { m_ReplyLimit = bytes; }

    // An operation works on what was set when it began. Handlers that run while it waits may therefore set anything,
    // start operations of this sender too, and even destroy it; the arguments must last. Nothing is raised.

    // An empty body goes as POST with Content-Length 0; a server that answers 405 or 501 to that is asked by GET.
    Text PostRequest(const ElementPtr& Server, const Text& Page, const Text& Body, Text& Reply,
                     const Text& Extra) override;
    // By HEAD.
    void GetHead(const ElementPtr& Server, const Text& Page, const Text& Extra, ResponseHead& Head) override;
    // By GET. The file is written aside as it arrives and put in its place when it is whole.
    Text DownloadFile(const ElementPtr& Server, const Text& Page, const Text& Extra,
                      const std::filesystem::path& Target) override;
    bool IsOnline() override { return m_Parts.Http.IsConnected(); }

private:
    Parts m_Parts;
    std::int32_t m_Timeout = DefaultTimeout;
    Text m_Key;
    std::uint64_t m_ReplyLimit = DataReplyLimit;
};

}  // namespace tb
