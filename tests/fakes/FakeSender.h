// A transport whose servers are a table: answers by page, every request kept, failures on demand.
#pragma once

#include <deque>
#include <map>
#include <tuple>
#include <utility>
#include <vector>

#include "components/tbSender/Sender.h"

namespace tb {

// What all senders of one test share.
class FakeWeb {
public:
    struct Request {
        Text Operation;  // "POST", "HEAD", "DOWNLOAD"
        Text Service;    // the element's NAME
        Text Page;
        Text Body;
        Text Key;
    };
    std::vector<Request> Requests;
    std::map<Text, Text> Replies;  // by page, case kept
    std::map<Text, Text> Heads;    // by page; without one the head is empty
    std::map<Text, Text> Errors;   // by page: the text that the operation gives back
    // By page: error and reply of the next posts; the tables above answer when none is left.
    std::map<Text, std::deque<std::pair<Text, Text>>> Scripts;
    bool Online = true;
    // Runs inside each request, as handlers do that a real one serves while it waits.
    std::function<void(const Request&)> Meanwhile;

    SenderFactory Factory();
};

class FakeSender : public Sender {
public:
    explicit FakeSender(FakeWeb& web) : m_Web(web) {}

    std::int32_t Timeout() const override { return m_Timeout; }
    void Timeout(std::int32_t milliseconds) override { m_Timeout = milliseconds; }
    void Key(const Text& key) override { m_Key = key; }
    void ReplyLimit(std::uint64_t bytes) override { m_ReplyLimit = bytes; }

    Text PostRequest(const ElementPtr& Server, const Text& Page, const Text& Body, Text& Reply,
                     const Text& /*Extra*/) override {
        Reply.clear();
        Record("POST", Server, Page, Body);
        Text error = Find(m_Web.Errors, Page);
        if (error.empty()) Reply = Find(m_Web.Replies, Page);
        std::deque<std::pair<Text, Text>>& script = m_Web.Scripts[Page];
        if (!script.empty()) {
            std::tie(error, Reply) = script.front();
            script.pop_front();
        }
        if (Reply.size() <= m_ReplyLimit) return error;
        Reply.clear();
        return "one: the reply is longer than " + std::to_string(m_ReplyLimit) + " bytes";
    }
    void GetHead(const ElementPtr& Server, const Text& Page, const Text& /*Extra*/, ResponseHead& Head) override {
        Head.Text.clear();
        Record("HEAD", Server, Page, {});
        Head.Text = Find(m_Web.Heads, Page);
    }
    Text DownloadFile(const ElementPtr& Server, const Text& Page, const Text& /*Extra*/,
                      const std::filesystem::path&) override {
        Record("DOWNLOAD", Server, Page, {});
        return Find(m_Web.Errors, Page);
    }
    bool IsOnline() override { return m_Web.Online; }

private:
    static Text Find(const std::map<Text, Text>& table, const Text& page) {
        const auto found = table.find(page);
        return found == table.end() ? Text() : found->second;
    }
    void Record(const char* operation, const ElementPtr& server, const Text& page, const Text& body) {
        m_Web.Requests.push_back({operation, server ? server->FindAttributeValue("NAME") : Text(), page, body, m_Key});
        if (m_Web.Meanwhile) m_Web.Meanwhile(m_Web.Requests.back());
    }

    FakeWeb& m_Web;
    std::int32_t m_Timeout = DefaultTimeout;
    std::uint64_t m_ReplyLimit = DataReplyLimit;
    Text m_Key;
};

inline SenderFactory FakeWeb::Factory() {
    return [this] { return std::make_unique<FakeSender>(*this); };
}

}  // namespace tb
