// The single entry for what a browser helper asks: may this URL pass, or let this one pass from now on.
#pragma once

#include <vector>

#include "sitedb/EvilDB.h"
#include "urlcheck/VerdictHost.h"

namespace tb {

class UrlVerdict {
public:
    // Both must outlive the verdict, and each request with it.
    UrlVerdict(EvilDB& evilDB, VerdictHost& host) : m_EvilDB(evilDB), m_Host(host) {}

    // Judges one request: args are the fields of its line (0 reply window, 1 command, 2 URL, 3 addresses). The reply is
    // "OK", the block text of a listed site, or empty (not a "Check", or no verdict because of a failure, which the log
    // tells). Works in memory: no disk but the log and the saving of an "Allow", no network. The message of an unknown
    // command serves messages, and the program may be about to end when it is closed: whoever calls holds the verdict
    // and the list.
    void CheckEvil(const std::vector<Text>& args, Text& reply) noexcept;

private:
    // What the final line of the log says of a request.
    struct Outcome {
        Text URL;
        Text Result;  // until it is the reply
        bool IsOverride = false;
        bool IsEvil = false;
    };

    void Dispatch(const std::vector<Text>& args, Text& reply);
    void Check(const std::vector<Text>& args, Outcome& outcome, Text& reply);
    void AskList(const Text& url, Outcome& outcome);
    void AskAddresses(const Text& addresses, Outcome& outcome);
    void ShowCountry(const Text& url, const Text& addresses);
    void UnknownCommand(const std::vector<Text>& args);

    EvilDB& m_EvilDB;
    VerdictHost& m_Host;
};

}  // namespace tb
