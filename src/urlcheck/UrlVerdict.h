// The single entry for what a browser helper asks: may this URL pass, or let this one pass from now on.
#pragma once

#include <memory>
#include <vector>

#include "sitedb/EvilDB.h"
#include "urlcheck/VerdictHost.h"

namespace tb {

class UrlVerdict {
public:
    // `host` must outlive the verdict, and each request with it.
    UrlVerdict(std::shared_ptr<EvilDB> list, VerdictHost& host) : m_EvilDB(std::move(list)), m_Host(host) {}

    // Judges one request: args are the fields of its line (0 reply window, 1 command, 2 URL, 3 addresses). The reply is
    // "OK", the block text of a listed site, or empty (not a "Check", or no verdict because of a failure, which the log
    // tells). Works in memory: no disk but the log and the saving of an "Allow", no network. The message of an unknown
    // command serves messages, and the program may be about to end when it is closed: whoever calls holds the verdict,
    // and a request holds the list to its end.
    void CheckEvil(const std::vector<Text>& args, Text& reply) noexcept;

    // The list goes with the program. A request that still comes has an empty reply and one line of level 0.
    void DropList() noexcept { m_EvilDB.reset(); }

private:
    // A request while it is judged.
    struct Request {
        std::shared_ptr<EvilDB> List;
        Text URL = {};
        Text Result = {};  // until it is the reply
        bool IsOverride = false;
        bool IsEvil = false;
    };

    void Dispatch(const std::vector<Text>& args, Text& reply);
    void Check(const std::vector<Text>& args, Request& request, Text& reply);
    static void AskList(const Text& url, Request& request);
    void AskAddresses(const Text& addresses, Request& request);
    void ShowCountry(const Text& url, const Text& addresses);
    void UnknownCommand(const std::vector<Text>& args);

    // Null once it has been dropped.
    std::shared_ptr<EvilDB> m_EvilDB;
    VerdictHost& m_Host;
};

}  // namespace tb
