#include "components/tbSender/tbSender.h"

#include <algorithm>

#include "base/errors.h"
#include "components/tbSender/ServerList.h"
#include "platform/AtomicWrite.h"

namespace tb {

namespace {

constexpr TextView FormType = "application/x-www-form-urlencoded";

// Why a server's answer is none. It ends a file that is being written, too.
struct ServerFailure {
    Text Reason;
    // Of its answer, 0 when none came.
    std::int32_t Status = 0;
};

// One operation. It holds copies of all that it needs, because its sender may go while it waits.
class Operation {
public:
    // Asks one server; raises ServerFailure.
    using Ask = std::function<void(Operation&, const Text& address)>;

    Operation(const tbSender::Parts& parts, std::int32_t timeout, Text key, std::uint64_t replyLimit)
        : m_Parts(parts),
          m_Timeout(timeout < 1 ? Sender::DefaultTimeout : timeout),
          m_Key(std::move(key)),
          m_ReplyLimit(replyLimit),
          m_End(parts.Now() + tbSender::WholeLimit) {}

    // Asks the servers until one has answered. Empty, or the reasons of all that were asked.
    Text AskServers(const ElementPtr& server, const Text& page, const Ask& ask) {
        const std::vector<Text> servers = DrawServers(server, m_Parts.Random);
        if (servers.empty()) return "no usable server";
        Text failures;
        for (const Text& base : servers) {
            if (IsCancelled()) return failures.empty() ? "cancelled" : failures;
            if (TimeLeft().count() <= 0) break;
            try {
                ask(*this, JoinAddress(base, page));
                return {};
            } catch (const ServerFailure& failure) {
                failures += (failures.empty() ? "" : "; ") + HostOf(base) + ": " + failure.Reason;
            }
        }
        return failures;
    }

    // One exchange whose answer has a status of success; its body goes to `body`.
    HttpResponse Exchange(const char* method, const Text& address, const Text& content, const Http::BodySink& body) {
        HttpResponse response;
        const Text failure =
            m_Parts.Http.Exchange(MakeRequest(method, address, content), response, [&](TextView bytes) {
                // What comes with any other status is not worth waiting for.
                CheckStatus(response);
                body(bytes);
            });
        // A bad status tells more than how the body behind it ended.
        if (failure.empty() || response.Status != 0) CheckStatus(response);
        if (!failure.empty()) throw ServerFailure{failure, 0};
        return response;
    }

    Files& Storage() const { return m_Parts.Files; }

private:
    static void CheckStatus(const HttpResponse& response) {
        const std::int32_t status = response.Status;
        if (status < 200 || status > 299) throw ServerFailure{"status " + std::to_string(status), status};
    }

    HttpRequest MakeRequest(const char* method, const Text& address, const Text& content) const {
        HttpRequest request;
        request.Method = method;
        request.Url = address;
        if (!m_Key.empty()) request.Headers.emplace_back(tbSender::KeyHeader, PercentEncoded(m_Key, "%"));
        if (!content.empty()) request.Headers.emplace_back("Content-Type", FormType);
        request.Body = content;
        request.WaitMilliseconds = m_Timeout;
        request.WholeMilliseconds = static_cast<std::int32_t>(std::max<std::int64_t>(TimeLeft().count(), 1));
        request.BodyLimit = m_ReplyLimit;
        request.IsCancelled = m_Parts.IsCancelled;
        return request;
    }

    std::chrono::milliseconds TimeLeft() const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(m_End - m_Parts.Now());
    }
    bool IsCancelled() const { return m_Parts.IsCancelled && m_Parts.IsCancelled(); }

    const tbSender::Parts m_Parts;
    const std::int32_t m_Timeout;
    const Text m_Key;
    const std::uint64_t m_ReplyLimit;
    const tbSender::Clock::time_point m_End;
};

// The error text of an operation, with what is raised besides the servers' failures.
template <typename Body>
Text Guarded(Body body) {
    Text error;
    Trap([&] { error = body(); }, [&](const RuntimeError& raised) { error = raised.Line(); });
    return error;
}

// The answer to a post with content, or without.
void Post(Operation& operation, const Text& address, const Text& content, Text& answer) {
    const auto collect = [&](TextView bytes) { answer += bytes; };
    answer.clear();
    try {
        operation.Exchange("POST", address, content, collect);
    } catch (const ServerFailure& failure) {
        // A server of plain files has no other method for them.
        if (!content.empty() || (failure.Status != 405 && failure.Status != 501)) throw;
        answer.clear();
        operation.Exchange("GET", address, {}, collect);
    }
}

}  // namespace

Text tbSender::PostRequest(const ElementPtr& Server, const Text& Page, const Text& Body, Text& Reply,
                           const Text& /*Extra*/) {
    Reply.clear();
    Text answer;
    Text error = Guarded([&] {
        Operation operation(m_Parts, m_Timeout, m_Key, m_ReplyLimit);
        return operation.AskServers(
            Server, Page, [&](Operation& running, const Text& address) { Post(running, address, Body, answer); });
    });
    if (error.empty()) Reply = std::move(answer);
    return error;
}

void tbSender::GetHead(const ElementPtr& Server, const Text& Page, const Text& /*Extra*/, ResponseHead& Head) {
    Head.Text.clear();
    Guarded([&] {
        Operation operation(m_Parts, m_Timeout, m_Key, m_ReplyLimit);
        return operation.AskServers(Server, Page, [&](Operation& running, const Text& address) {
            Head.Text = running.Exchange("HEAD", address, {}, [](TextView) {}).Head;
        });
    });
}

Text tbSender::DownloadFile(const ElementPtr& Server, const Text& Page, const Text& /*Extra*/,
                            const std::filesystem::path& Target) {
    return Guarded([&] {
        Operation operation(m_Parts, m_Timeout, m_Key, m_ReplyLimit);
        return operation.AskServers(Server, Page, [&](Operation& running, const Text& address) {
            WriteFileAtomically(running.Storage(), Target, [&](FileWriter& file) {
                running.Exchange("GET", address, {}, [&](TextView bytes) { file.Write(bytes); });
            });
        });
    });
}

}  // namespace tb
