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
    for (const char* text : {"",           " ",           "08.1.2.3",        "1.2.3.256",  "1.2.3.4.",  ".1.2.3",
                             "1..2.3",     "1.2.3.4.5",   "256.1",           "1.16777216", "1.2.65536", "4294967295",
                             "4294967296", "99999999999", "255.255.255.255", "0xFFFFFFFF", "[::1]",     "1.2.3.4 ",
                             "1.2.3.4 x",  "1.2.3.-4",    "+1.2.3.4",        "0x",         "0x.1",      "1.2.3.a",
                             "0xG",        "evil.example"}) {
        EXPECT_EQ(Folded(text), "-") << text;
    }
    EXPECT_EQ(Folded(Text("1.2.3.4\0", 8)), "-");
}

struct Normalized {
    Text Url;
    Text Result;
    Text Message;
};

Normalized Normalize(Text url) {
    Normalized outcome;
    outcome.Result = NormalizeIP(url, [&](const Text& line) { outcome.Message += line; });
    outcome.Url = url;
    return outcome;
}

TEST(NormalizeIP, RewritesNumericHosts) {
    for (const auto& [url, result] :
         std::vector<std::pair<Text, Text>>{{"http://3232235777/", "http://192.168.1.1"},
                                            {"http://0xC0.0xA8.0x01.0x01/a/", "http://192.168.1.1/a"},
                                            {"http://127.1/x", "http://127.0.0.1/x"},
                                            {"http://10.66051", "http://10.1.2.3"},
                                            {"http://010.1.2.3:8080/", "http://8.1.2.3:8080"},
                                            {"http://user@2130706433:8080/p/", "http://user@127.0.0.1:8080/p"},
                                            {"http://user:pw@2130706433:80/p", "http://user:pw@127.0.0.1:80/p"},
                                            {"http://a?u=1@2130706433", "http://a?u=1@127.0.0.1"},
                                            {"HTTPS://0/", "HTTPS://0.0.0.0"},
                                            {"2130706433", "http://127.0.0.1"}}) {
        const Normalized outcome = Normalize(url);
        EXPECT_EQ(outcome.Result, result);
        EXPECT_EQ(outcome.Message, "Normalize IP: " + outcome.Url + " --> " + result);
    }
}

TEST(NormalizeIP, LeavesEveryOtherHostAlone) {
    for (const auto& [url, result] :
         std::vector<std::pair<Text, Text>>{{"http://user:pw@2130706433/p", "http://user:pw@2130706433/p"},
                                            {"http://[::1]:80/", "http://[::1]:80"},
                                            {"http://:80/", "http://:80"},
                                            {"http://a@/", "http://a@"},
                                            {"http://1.2.3.4/", "http://1.2.3.4"},
                                            {"HTTP://EVIL.Example///", "HTTP://EVIL.Example"},
                                            {"evil.example", "http://evil.example"},
                                            {"", "http:"},
                                            {"/", "http:"},
                                            {"http://", "http:"},
                                            {"ftp://x/", "http://ftp://x"},
                                            {"http.example/", "http.example"},
                                            {"RES://a/b/", "RES://a/b/"}}) {
        const Normalized outcome = Normalize(url);
        EXPECT_EQ(outcome.Result, result);
        EXPECT_EQ(outcome.Url, result) << "the argument comes back changed in the same way";
        EXPECT_EQ(outcome.Message, "");
    }
}

}  // namespace
}  // namespace tb
