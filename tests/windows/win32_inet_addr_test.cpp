// Our reading of numeric hosts beside the system's own.
#include <winsock2.h>

#include <gtest/gtest.h>

#include "urlcheck/url/inet_addr.h"

namespace tb {
namespace {

Text BySystem(const Text& text) {
    const unsigned long address = ::inet_addr(text.c_str());
    return address == INADDR_NONE ? "-" : inet_ntoa(ntohl(address));
}

Text ByUs(const Text& text) {
    const std::optional<IPv4> address = inet_addr(TextView(text));
    return address ? inet_ntoa(*address) : "-";
}

TEST(InetAddr, ReadsWhatTheSystemReads) {
    std::vector<Text> texts{"3232235777",      "0xC0.0xA8.1.1", "0300.0250.1.1",
                            "192.168.257",     "127.1",         "0",
                            "1.16777215",      "4294967294",    "",
                            "08.1.2.3",        "1.2.3.256",     "1.2.3.4.",
                            ".1.2.3",          "1..2.3",        "1.2.3.4.5",
                            "256.1",           "1.2.65536",     "4294967295",
                            "255.255.255.255", "evil.example",  "+1.2.3.4",
                            "1.2.3.a",         "0xG",           "[::1]",
                            "1.2.3.-4"};
    // What stands behind the number, or between its parts.
    for (int code = 1; code < 0x100; ++code) {
        const Text character(1, static_cast<char>(code));
        if (character == ".") continue;
        for (const char* before : {"1.2.3.4", "16909060", "0x10"}) {
            texts.push_back(before + character);
            texts.push_back(before + character + "x");
        }
    }
    for (const char* text : {"1.2.3.4 \t 5", "1.2.3.4 .5", "1 .2.3.4", "1.2.3. 4", "0xA  "}) texts.emplace_back(text);
    for (const Text& text : texts) EXPECT_EQ(ByUs(text), BySystem(text)) << Quoted(text);
}

}  // namespace
}  // namespace tb
