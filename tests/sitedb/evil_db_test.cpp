#include <gtest/gtest.h>

#include "sitedb/ListOfSites.h"

namespace tb {
namespace {

TEST(EvilDB, TheLongestSuffixWithAnEntryThatBeginsTheUrlHits) {
    ListOfSites sites;
    sites.Add("http://www.a.evil.example", "2", "long");
    sites.Add("http://evil.example", "2", "short");
    sites.Add("http://com", "2", "label");
    sites.Add("http://2.3", "2", "tail");
    sites.Add("HTTP://Bank.Example/a%2FB/", "2", "escaped");
    sites.Add("http://caps.example/%41", "2", "never");
    const std::pair<Text, Lines> cases[] = {
        {"long", {"http://www.a.evil.example/x"}},
        {"short",
         {"http://a.evil.example", "HTTP://B.A.EVIL.EXAMPLE/", "http://..evil.example/a", "http://a..evil.example",
          "http://u@www.evil.example/"}},
        {"label", {"http://com/"}},
        {"tail", {"http://10.1.2.3/"}},
        {"escaped", {"http://www.bank.example/A/bc"}},
        {"-",
         {"evil.example", "http:/evil.example", "", "http://evil.example./", "http://evil.example:80/",
          "http://evil.example?x", "http://notevil.example", "https://evil.example", "http://evil.example.org",
          "http://www.com/", "http://bank.example/a", "http://caps.example/A"}}};
    for (const auto& [hit, urls] : cases) {
        for (const Text& url : urls) EXPECT_EQ(sites.Hit(url), hit) << url;
    }
    EXPECT_TRUE(sites.Log.Take().empty());
}

// Whatever was expected, and in whatever order it comes, the list as it is then answers.
TEST(EvilDB, ExpectationsChangeNoAnswer) {
    ListOfSites sites;
    sites.Add("http://evil.example/a", "2", "a");
    sites.Add("http://gone.example");
    sites.DB->Expect({"http://www.evil.example/a", "http://gone.example", "http://new.example", "http:///",
                      "http://a.b.c.d.e.evil.example/A"});
    sites.Add("http://new.example", "2", "new");
    sites.DB->DelFromDB("http://gone.example", "", "");
    EXPECT_EQ(sites.Hit("http://new.example"), "new");
    EXPECT_EQ(sites.Hit("http://www.evil.example/a"), "a");
    EXPECT_EQ(sites.Hit("http://gone.example"), "-");
    for (int time = 0; time < 2; ++time) EXPECT_EQ(sites.Hit("http://a.b.c.d.e.evil.example/A"), "a");
    sites.DB->Expect({"http://evil.example/a", "http://" + Text(70000, '.') + "/"});
    EXPECT_EQ(sites.Hit("http://evil.example/a"), "a");
    sites.Log.Take();
    EXPECT_EQ(sites.Hit("http:///"), "-");
    EXPECT_EQ(sites.Log.Take(), Lines{"0 Malicious Database IsEvil Error:: 9 Subscript out of range"});
}

// A host with many paths has an index of them; the first entry that fits counts all the same, not the longest, and an
// entry without a number fails what reaches it, wherever in memory the entries lie.
TEST(EvilDB, OfALongListTheFirstEntryThatFitsCounts) {
    ListOfSites sites;
    Text emptied = "202611210900\n0";
    for (int path = 0; path < 40; ++path) {
        const Text gone = "http://gone.example/" + std::to_string(path);
        sites.Add(gone, "2", Text(30000, 'f'));
        emptied += "\n-\t" + gone + "\t\t";
    }
    for (int path = 0; path < 40; ++path) sites.Add("http://long.example/p" + std::to_string(path) + "/", "2", "other");
    sites.Add("http://long.example/deep/er", "2", "first");
    sites.Add("http://long.example/deep", "2", "second");
    sites.Add("http://long.example/deep/er/est", "2", "third");
    sites.Add("http://long.example/de", "none", "fourth");
    sites.Add("http://long.example/d", "2", "last");
    const auto expect = [&](const Text& failing, const Text& behind) {
        EXPECT_EQ(sites.Hit("http://long.example/deep/er/est"), "first");
        EXPECT_EQ(sites.Hit("http://long.example/deep/e"), "second");
        EXPECT_TRUE(sites.Log.Take().empty());
        EXPECT_EQ(sites.Hit("http://long.example/d" + failing), behind);
        EXPECT_EQ(sites.Log.Take().empty(), behind != "-");
    };
    expect("ee", "-");
    sites.Update(emptied);
    expect("ee", "-");
    expect("x", "-");
    sites.DB->DelFromDB("http://long.example/de", "", "");
    expect("ee", "last");
}

TEST(EvilDB, CategoryOneIsPassedOverAndABadOneFailsEveryCheckThatReachesIt) {
    ListOfSites sites;
    sites.Add("http://www.evil.example", "1", "general");
    sites.Add("http://evil.example/offer", "2", "spoof");
    sites.Add("http://one.example", "1.0", "equal to one");
    EXPECT_EQ(sites.Hit("http://www.evil.example/offer/x"), "spoof");
    EXPECT_EQ(sites.Hit("http://www.evil.example/x"), "-");
    EXPECT_EQ(sites.Hit("http://one.example"), "-");
    sites.Add("http://bad.example/first", "2", "first");
    sites.Add("http://bad.example/bad", "two");
    sites.Add("http://bad.example/last", "2", "last");
    EXPECT_EQ(sites.Hit("http://bad.example/first"), "first");
    EXPECT_TRUE(sites.Log.Take().empty());
    EXPECT_EQ(sites.Hit("http://bad.example/last"), "-");
    // An unknown category ends the whole search: the shorter suffix is not asked any more.
    sites.Add("http://sub.unknown.example", "2.0");
    sites.Add("http://unknown.example", "2");
    EXPECT_EQ(sites.Hit("http://sub.unknown.example"), "-");
    EXPECT_EQ(sites.Hit("http://unknown.example"), "date");
    EXPECT_EQ(sites.Log.Take(),
              (Lines{"0 Malicious Database IsEvil Error:: 13 Type mismatch",
                     "0 Malicious Database IsEvil Error:: 91 Object variable or With block variable not set"}));
    Text category;
    Text validated;
    EXPECT_TRUE(sites.DB->IsEvil("http://evil.example/offer", category, validated));
    EXPECT_EQ(category, "Banking or Credit Card Spoof");
}

TEST(EvilDB, AddsOnceAndDeletesByUrl) {
    ListOfSites sites;
    sites.Add("HTTP://Evil.Example/a/", "2", "first");
    sites.Add("http://evil.example/a", "1", "second");
    EXPECT_EQ(sites.Hit("http://evil.example/a"), "first");
    sites.Add("http://evil.example/b");
    EXPECT_EQ(sites.DB->LiveCount(), 2);
    EXPECT_EQ(sites.DB->Count(), 0);
    sites.DB->DelFromDB("http://evil.example/absent", "", "");
    sites.DB->DelFromDB("http://EVIL.example/a//", "9", "any");
    EXPECT_EQ(sites.Log.Take(), Lines{"1 MalDB.AddToDB: dup entry - http://evil.example/a (2)"});
    EXPECT_EQ(sites.Hit("http://evil.example/a"), "-");
    for (int time = 0; time < 2; ++time) sites.DB->DelFromDB("http://evil.example/b", "", "");
    EXPECT_EQ(sites.Log.Take(), (Lines{"1 MalDB.DelFromDB: domain removed (evil.example)",
                                       "1 MalDB.DelFromDB: no domain (evil.example)"}));
    EXPECT_EQ(sites.DB->LiveCount(), 0);
}

TEST(EvilDB, RefusesWhatIsNoEntry) {
    ListOfSites sites;
    sites.Add("Evil.Example%41/");
    sites.DB->DelFromDB("Evil.Example%41/", "", "");
    sites.Add("http:///x");
    sites.Add("http://long.example/" + Text(32768, 'x'));
    EXPECT_EQ(sites.Log.Take(),
              (Lines{"1 MalDB.AddToDB: bad entry (evil.example%41)", "1 MalDB.DelFromDB: bad entry (evil.exampleA)",
                     "0 MalDB.AddToDB Error: 9 Subscript out of range", "0 MalDB.AddToDB Error: 6 Overflow"}));
    // The longest record that still fits.
    const Text longest = "http://long.example/" + Text(32767 - 20 - Text("\t2\tdate").size(), 'x');
    sites.Add(longest);
    EXPECT_EQ(sites.Hit(longest + "/more"), "date");
    for (const Text& host : {Text("."), Text(40000, 'a'), Text(65000, '.')})
        EXPECT_EQ(sites.Hit("http://" + host), "-");
    EXPECT_EQ(sites.Log.Take(), (Lines{"0 Malicious Database IsEvil Error:: 9 Subscript out of range",
                                       "0 Malicious Database IsEvil Error:: 6 Overflow",
                                       "0 Malicious Database IsEvil Error:: 6 Overflow"}));
}

}  // namespace
}  // namespace tb
