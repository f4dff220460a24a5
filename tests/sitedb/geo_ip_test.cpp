#include "sitedb/GeoIP.h"

#include <gtest/gtest.h>

#include "components/tbXML/Document.h"
#include "fakes/Raised.h"
#include "fakes/RecordedLog.h"
#include "sitedb/WhiteListDB.h"
#include "sitedb/codec/Base64.h"
#include "urlcheck/url/inet_addr.h"

namespace tb {
namespace {

struct Range {
    const char* First;
    const char* Last;
    const char* Code;
};
const Range A{"1.0.0.0", "1.0.0.255", "AA"};
const Range B{"2.0.0.0", "2.255.255.255", "BB"};
const Range C{"200.0.1.0", "200.0.1.255", "CC"};
// What tables end in; see docs/formats/reference.md.
const Range Sentinel{"255.255.255.254", "255.255.255.254", "ZZ"};

Text TableOf(const std::vector<Range>& ranges) {
    Text bytes;
    for (const Range& range : ranges) {
        for (const char* text : {range.First, range.Last}) {
            const IPv4 address = inet_addr(text).value();
            for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(address >> shift & 0xFFU);
        }
        bytes += range.Code;
    }
    return Base64Encode(bytes);
}

struct Geo : GeoIPHost {
    explicit Geo(const std::vector<Range>& ranges = {}) {
        Document document;
        document.LoadXML(
            "<COUNTRIES><C ALPHA2='AA' NAME='Aland' WEIGHT='75'/><C ALPHA2='bb' NAME='Beland' WEIGHT='0'/>"
            "<C ALPHA2='CC' NAME='Celand' WEIGHT='10'/><C ALPHA2='DD' NAME='Deland' WEIGHT='much'/></COUNTRIES>");
        Countries = {document.begin(), document.end()};
        Table.LoadCountries(Countries);
        Table.LoadIPCountry(TableOf(ranges));
    }
    Text EvilWords() override { return Words; }
    Text HomeCountry() override { return Home; }

    double Score(const Text& url, const Text& addresses = {}) {
        double score = 0;
        EXPECT_TRUE(Table.ScoreURL(url, addresses, score, Country));
        return score;
    }
    Text CountryOf(const Text& addresses) {
        Score("http://x.example/", addresses);
        return Country;
    }

    Text Words = "x";
    Text Home;
    Text Country;  // of the last score
    Element::Children Countries;
    GeoIP Table{*this};
};

TEST(GeoIP, FindsTheRangeOfAnAddress) {
    // A table that ends in an ordinary record finds nothing above the first address whose bytes the short test takes.
    EXPECT_EQ(Geo({A, B, C}).CountryOf("1.0.0.0"), "");
    Geo high({A, B, {"200.0.0.200", "200.0.1.255", "CC"}});
    Geo whole({A, B, C, Sentinel});
    const std::tuple<Text, Text, Text> cases[] = {
        {"0.255.255.255", "", ""},     {"1.0.0.0", "Aland", "Aland"},
        {"1.0.1.0", "", ""},           {"2.255.255.255", "Beland", "Beland"},
        {"200.0.0.200", "Celand", ""}, {"200.0.1.255", "Celand", "Celand"},
        {"255.255.255.255", "", ""},   {" 2.0.0.1 1.0.0.9 junk 9.9.9.9", "Aland", "Aland"},
    };
    for (const auto& [address, inHigh, inWhole] : cases) {
        EXPECT_EQ(high.CountryOf(address), inHigh) << address;
        EXPECT_EQ(whole.CountryOf(address), inWhole) << address;
    }
}

TEST(GeoIP, DefectiveDataIsAnErrorOrNoCountryAndNeverALoop) {
    Geo unknown({A, {"3.0.0.0", "3.0.0.1", "XX"}, Sentinel});
    EXPECT_EQ(Raised([&] { unknown.CountryOf("1.0.0.1 3.0.0.1"); }), 5);
    EXPECT_EQ(Raised([&] { unknown.Table.LoadCountries(unknown.Countries); }), 457);
    unknown.Table.LoadIPCountry(" \r\n");
    EXPECT_EQ(unknown.CountryOf("1.0.0.1"), "Aland");

    Geo backwards({A, {"3.0.0.9", "3.0.0.1", "BB"}, Sentinel});
    for (const char* address : {"3.0.0.9", "3.0.0.5"}) EXPECT_EQ(backwards.CountryOf(address), "");
    const Text whole = Base64Decode(TableOf({A, B, Sentinel}));
    for (size_t length = 1; length < whole.size(); ++length) {
        Geo cut;
        cut.Table.LoadIPCountry(Base64Encode(whole.substr(0, length)));
        EXPECT_EQ(cut.Table.IsSorted(), length % 10 == 0) << length;
        EXPECT_EQ(Raised([&] { cut.CountryOf("255.255.255.255"); }), length < 7 ? 9 : 0) << length;
    }
    Geo weightless({A, {"3.0.0.0", "3.0.0.1", "DD"}, Sentinel});
    EXPECT_EQ(Raised([&] { weightless.CountryOf("3.0.0.1"); }), 13);
}

TEST(GeoIP, ScoresTheTextOfAUrl) {
    const std::tuple<Text, Text, double> cases[] = {
        {"http://1.2.3.4/", "x", 6.3333},
        {"http://3232235777/", "x", 10},
        {"http://user@evil.example/", "x", 8},
        {"http://user@/", "x", 2},
        {"http://a.example: 80 ", "x", 4.5},
        {"http://user:pw@1.0.0.1:8080/x", "x", 11},
        {"http://0x7f.1/", "x", 9.75},
        {"http://ok.example/\xe9\x7f", "x", 7.502},
        {"http://1.2.3.4/a%20b%20c", "x", 6.7333},
        {"http://pay-pal.example/bank-login", "x,paypal,bank", 4.6667},
        {"http://pay-pal.example/bank-login", "paypal,,BANK", 2.6667},
        {"aaaa.example", "x,aa", 5},
    };
    Geo geo;
    for (const auto& [url, words, score] : cases) {
        geo.Words = words;
        EXPECT_NEAR(geo.Score(url), score, 0.00005) << url << " " << words;
    }
    Geo foreign({A, B, Sentinel});
    EXPECT_NEAR(foreign.Score("http://www.good.example", "1.0.0.1"), 4.1667, 0.00005);
    foreign.Home = "Aland";
    EXPECT_NEAR(foreign.Score("http://www.good.example", "1.0.0.1"), 2.6667, 0.00005);
}

TEST(WhiteListDB, CoversHostsBySuffix) {
    WhiteListDB list;
    RecordedLog log;
    list.LogMessage.Connect([&](const Text& line, LogLevel level) { log.WriteLog(line, level); });
    for (const char* domain : {"Good.Example", "good.%65xample", "intranet", " blank.example "}) list.AddToDB(domain);
    EXPECT_EQ(list.Count(), 3);
    for (const char* host :
         {"good.example", "GOOD.EXAMPLE", "a.b.good.example", "..good.example", "www.go%6Fd.example", "intranet"}) {
        EXPECT_TRUE(list.isWhiteList(host)) << host;
    }
    for (const char* host : {"good.example:8080", "com", "example", "notgood.example", "a.intranet", "blank.example"}) {
        EXPECT_FALSE(list.isWhiteList(host)) << host;
    }
    EXPECT_FALSE(list.isWhiteList(""));
    list.AddToDB("");
    EXPECT_EQ(log.Take(),
              (std::vector<Text>{"1 List AddToDB: dup entry - good.example", "0 List Match Error: 1001 Invalid key",
                                 "0 List AddToDB Error: 1001 Invalid key"}));
}

}  // namespace
}  // namespace tb
