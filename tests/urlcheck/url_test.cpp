#include <gtest/gtest.h>

#include "urlcheck/url/NormalizeIP.h"
#include "urlcheck/url/UrlDecode.h"
#include "urlcheck/url/inet_addr.h"

namespace tb {
namespace {

TEST(UrlDecode, DecodesOnceAndExactly) {
    EXPECT_EQ(UrlDecode("a%41b+%2541++%2B %%41%zz%41%4g%-1%E9%e9 100%"), "aAb %41  + %A%zzA%4g%-1\xE9\xE9 100%");
    EXPECT_EQ(UrlDecode("a%00b%4"), Text("a\0b%4", 5));
}

Text Folded(const Text& text) {
    const auto address = inet_addr(text);
    return address ? inet_ntoa(*address) : "-";
}

TEST(InetAddr, TakesTheFormsThatBrowsersTake) {
    for (const char* text :
         {"3232235777", "0xC0.0xA8.0x01.0x01", "0300.0250.1.1", "192.168.257", "192.11010305", "0XC0A80101"}) {
        EXPECT_EQ(Folded(text), "192.168.1.1") << text;
    }
    EXPECT_EQ(Folded("1.16777215"), "1.255.255.255");
    for (const char* text : {"",          " ",          "08.1.2.3",    "1.2.3.256",   "1.2.3.4.",
                             ".1.2.3",    "1..2.3",     "1.2.3.4.5",   "256.1",       "1.16777216",
                             "1.2.65536", "4294967295", "4294967296",  "99999999999", "255.255.255.255",
                             "[::1]",     " 1.2.3.4",   "1.2.3. 4",    "1.2.3.-4",    "+1.2.3.4",
                             "0x.1",      "0x 1",       "1.2.3.4\xA0", "0xG"}) {
        EXPECT_EQ(Folded(text), "-") << text;
    }
    for (const char space : TextView("\t\n\v\f\r ")) {
        EXPECT_EQ(Folded(Text("0x10") + space + "x.y"), "0.0.0.16") << int{space};
    }
    EXPECT_EQ(Folded(Text("1.2.3.4\0", 8)), "-");
}

TEST(NormalizeIP, RewritesNumericHostsAndLeavesAllOthersAlone) {
    const struct {
        Text Url, Result;
        bool Rewrites = true;
    } cases[] = {{"http://3232235777/", "http://192.168.1.1"},
                 {"http://user@2130706433:8080/p/", "http://user@127.0.0.1:8080/p"},
                 {"http://user:pw@2130706433:80/p", "http://user:pw@127.0.0.1:80/p"},
                 {"2130706433", "http://127.0.0.1"},
                 {"http://user:pw@2130706433/p", "http://user:pw@2130706433/p", false},
                 {"HTTP://EVIL.Example///", "HTTP://EVIL.Example", false},
                 {"", "http:", false},
                 {"RES://a/b/", "RES://a/b/", false}};
    for (const auto& [given, result, rewrites] : cases) {
        Text url = given;
        Text told;
        EXPECT_EQ(NormalizeIP(url, [&](const Text& line) { told += line; }), result);
        EXPECT_EQ(told, rewrites ? "Normalize IP: " + url + " --> " + result : "");
        EXPECT_TRUE(rewrites || url == result) << "the argument comes back changed in the same way";
    }
}

}  // namespace
}  // namespace tb
