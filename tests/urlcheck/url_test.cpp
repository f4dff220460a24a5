#include <gtest/gtest.h>

#include "urlcheck/url/NormalizeIP.h"
#include "urlcheck/url/UrlDecode.h"
#include "urlcheck/url/inet_addr.h"

namespace tb {
namespace {

TEST(UrlDecode, DecodesOnceAndExactly) {
    for (const auto& [text, decoded] : std::vector<std::pair<Text, Text>>{{"100%", "100%"},
                                                                          {"a%41b", "aAb"},
                                                                          {"a+b", "a b"},
                                                                          {"%2541", "%41"},
                                                                          {"+%2B", " +"},
                                                                          {"%%41", "%A"},
                                                                          {"%4", "%4"},
                                                                          {"%zz%41", "%zzA"},
                                                                          {"%4g%-1", "%4g%-1"},
                                                                          {"%E9%e9", "\xE9\xE9"},
                                                                          {"a%00b", Text("a\0b", 3)},
                                                                          {"", ""}}) {
        EXPECT_EQ(UrlDecode(text), decoded) << text;
    }
}

Text Folded(const Text& text) {
    const auto address = inet_addr(text);
    return address ? inet_ntoa(*address) : "-";
}

TEST(InetAddr, TakesTheFormsThatBrowsersTake) {
    for (const char* text : {"3232235777", "0xC0.0xA8.0x01.0x01", "0300.0250.1.1", "192.168.257", "192.11010305",
                             "0XC0A80101", "192.168.0x101", "030052000401"}) {
        EXPECT_EQ(Folded(text), "192.168.1.1") << text;
    }
    EXPECT_EQ(Folded("0"), "0.0.0.0");
    EXPECT_EQ(Folded("127.1"), "127.0.0.1");
    EXPECT_EQ(Folded("1.16777215"), "1.255.255.255");
    EXPECT_EQ(Folded("4294967294"), "255.255.255.254");
    for (const char* text : {"",           " ",           "08.1.2.3",        "1.2.3.256",  "1.2.3.4.",    ".1.2.3",
                             "1..2.3",     "1.2.3.4.5",   "256.1",           "1.16777216", "1.2.65536",   "4294967295",
                             "4294967296", "99999999999", "255.255.255.255", "0xFFFFFFFF", "[::1]",       " 1.2.3.4",
                             "1.2.3. 4",   "1.2.3.-4",    "+1.2.3.4",        "0x",         "0x.1",        "1.2.3.a",
                             "0x 1",       "1.2.3.4\xA0", "1.2.3.4\x08",     "0xG",        "evil.example"}) {
        EXPECT_EQ(Folded(text), "-") << text;
    }
    for (const char space : TextView("\t\n\v\f\r ")) {
        EXPECT_EQ(Folded(Text("1.2.3.4") + space), "1.2.3.4") << int{space};
        EXPECT_EQ(Folded(Text("0x10 x.y") + space), "0.0.0.16") << int{space};
    }
    EXPECT_EQ(Folded(Text("1.2.3.4\0", 8)), "-");
}

TEST(NormalizeIP, RewritesNumericHostsAndLeavesAllOthersAlone) {
    const struct {
        Text Url, Result;
        bool Rewrites = true;
    } cases[] = {{"http://3232235777/", "http://192.168.1.1"},
                 {"http://0xC0.0xA8.0x01.0x01/a/", "http://192.168.1.1/a"},
                 {"http://010.1.2.3:8080/", "http://8.1.2.3:8080"},
                 {"http://user@2130706433:8080/p/", "http://user@127.0.0.1:8080/p"},
                 {"http://user:pw@2130706433:80/p", "http://user:pw@127.0.0.1:80/p"},
                 {"http://a?u=1@2130706433", "http://a?u=1@127.0.0.1"},
                 {"HTTPS://0/", "HTTPS://0.0.0.0"},
                 {"2130706433", "http://127.0.0.1"},
                 {"http://16909060 /", "http://1.2.3.4"},
                 {"1.2.3.4 /x", "http://1.2.3.4/x"},
                 {"http://u@1.2.3.4\t:80/", "http://u@1.2.3.4:80"},
                 {"http://1.2.3.4 x:80/", "http://1.2.3.4:80"},
                 {"http://user:pw@2130706433/p", "http://user:pw@2130706433/p", false},
                 {"http://[::1]:80/", "http://[::1]:80", false},
                 {"http://:80/", "http://:80", false},
                 {"http://a@/", "http://a@", false},
                 {"http://1.2.3.4/", "http://1.2.3.4", false},
                 {"HTTP://EVIL.Example///", "HTTP://EVIL.Example", false},
                 {"", "http:", false},
                 {"/", "http:", false},
                 {"ftp://x/", "http://ftp://x", false},
                 {"http.example/", "http.example", false},
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
