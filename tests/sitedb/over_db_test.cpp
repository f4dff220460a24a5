#include <gtest/gtest.h>

#include "fakes/FakePlatform.h"
#include "fakes/Raised.h"
#include "fakes/RecordedLog.h"
#include "sitedb/HashTable.h"
#include "sitedb/OverDB.h"
#include "sitedb/SiteOverridesPanel.h"
#include "urlcheck/url/UrlDecode.h"

namespace tb {
namespace {

using Lines = std::vector<Text>;
const std::filesystem::path File = "Data/SiteOverrides.xml";
const std::filesystem::path BadCopy = "Data/SiteOverrides.xml.bad";
const Text FirstLine = "<SiteOverrides Date='11/21/2026 08:09:10' Version='1.0'>\r\n";

class OverDBTest : public testing::Test, public SiteOverridesDialogs {
protected:
    OverDBTest() {
        Storage.Folders.insert("Data");
        Listen(DB);
    }
    void Listen(OverDB& db) {
        db.LogMessage.Connect([this](const Text& line, LogLevel level) { Log.WriteLog(line, level); });
    }
    void Add(const Lines& urls) {
        for (const Text& url : urls) DB.AddToDB(url);
    }
    // What a program started anew finds in the file.
    Lines Reloaded() {
        OverDB later(Storage, Time, File);
        Listen(later);
        later.LoadDB();
        return later.Count() == 0 ? Lines() : later.URLS();
    }
    static Text Content(const Text& lines) { return FirstLine + lines + "</SiteOverrides>\r\n"; }
    std::int32_t ShowMessage(const Text& prompt, std::int32_t buttons) override {
        Shown.push_back(std::to_string(buttons) + " " + prompt);
        return Answer;
    }
    std::int32_t ShowSystemMessage(const Text& prompt, std::int32_t buttons) override {
        return ShowMessage("plain: " + prompt, buttons);
    }

    FakeFiles Storage;
    FakeClock Time;
    RecordedLog Log;
    OverDB DB{Storage, Time, File};
    SiteOverridesPanel Panel{DB, *this, Log};
    Lines Shown;
    std::int32_t Answer = 1;
};

TEST_F(OverDBTest, MatchesByHostSuffixAndTextPrefix) {
    Add({"http://bank.example/a", "shop.example", "http://a.example/%41", "https://Two.Example/x//",
         "http://p.example/%2561"});
    for (const char* covered : {"http://bank.example/a", "http://www.bank.example/ab", "HTTP://BANK.EXAMPLE/A/b",
                                "http://shop.example", "http://a.b.shop.example/x", "https://two.example/x/y",
                                // Stored as "%61", and decoded once more for the comparison.
                                "http://p.example/a"}) {
        EXPECT_TRUE(DB.IsOverride(covered)) << covered;
    }
    for (const char* other : {"https://bank.example/a", "http://bank.example/", "https://shop.example/", "shop.example",
                              // Stored with the capital, which no lower-cased URL has.
                              "http://a.example/A", "http://example", "http://p.example/%61", "", "http:/shop.example",
                              "http://shop.example:80", "http://shop.example?", "http://shop.example\\x"}) {
        EXPECT_FALSE(DB.IsOverride(other)) << other;
    }
    OverDB none(Storage, Time, File);
    Listen(none);
    for (const char* plain : {"http://a.b/..", "a..b", "http://a"}) EXPECT_FALSE(none.IsOverride(plain)) << plain;
    EXPECT_TRUE(Log.Take().empty());
    // A host that is no key, with overrides and without.
    for (OverDB* const db : {&DB, &none}) EXPECT_FALSE(db->IsOverride("http:///x"));
    EXPECT_EQ(Log.Take(), Lines(2, "0 Override Database IsOverride Error: 1001 Invalid key"));
}

TEST_F(OverDBTest, AddsAndRemovesByTheirOwnRules) {
    Add({"bank.example", "HTTP://Bank.Example//", "httpfoo.example", "http:///x", "http://bank.example/a"});
    DB.DelFromDB("bank.example");
    DB.DelFromDB("http://other.example");
    DB.DelFromDB("http://bank.example/b");
    EXPECT_EQ(DB.Count(), 2);
    DB.DelFromDB("http://BANK.example/%61/");
    EXPECT_EQ(DB.URLS(), Lines{"http://bank.example"});
    DB.DelFromDB("http://bank.example");
    EXPECT_EQ(DB.Count(), 0);
    EXPECT_EQ(
        Log.Take(),
        (Lines{"1 OverDB.AddToDB: dup entry - http://bank.example", "1 OverDB.AddToDB: bad entry (httpfoo.example)",
               "0 OverDB.AddToDB Error: 1001 Invalid key", "1 OverDB.DelFromDB: bad entry (bank.example)",
               "1 OverDB.DelFromDB: no domain (other.example)", "1 OverDB.DelFromDB: domain removed (bank.example)"}));
}

TEST_F(OverDBTest, TheFileIsTextToTheByteAndALoadCountsItsEntries) {
    DB.LoadDB();
    EXPECT_EQ(Storage.Contents.at(File), Content(""));
    EXPECT_EQ(Raised([&] { DB.URLS(); }), 9);
    Add({"http://b.example/?x=1&y=2", "http://a.example", "http://b.example/caf\xe9"});
    DB.SaveDB();
    // In the walk order of the domains, inside a domain in the order of adding.
    EXPECT_EQ(Storage.Contents.at(File), Content("  <Site>http://a.example</Site>\r\n"
                                                 "  <Site>http://b.example/?x=1&y=2</Site>\r\n"
                                                 "  <Site>http://b.example/caf\xe9</Site>\r\n"));
    OverDB spelled(Storage, Time, File, {'.', '-'});
    spelled.SaveDB();
    EXPECT_EQ(Storage.Contents.at(File),
              "<SiteOverrides Date='11.21.2026 08-09-10' Version='1.0'>\r\n</SiteOverrides>\r\n");
    // A file that people have edited is XML.
    Storage.Contents[File] = "<x><Site>http://a.example/</Site><y>A.example</y><y>b.example/?a&amp;b</y></x>";
    DB.LoadDB();
    EXPECT_EQ(Log.Take(), Lines{"1 OverDB.AddToDB: dup entry - http://a.example"});
    EXPECT_EQ(DB.URLS(), (Lines{"http://a.example", "http://b.example/?a&b", ""}));
    EXPECT_FALSE(DB.IsOverride("http://b.example/caf\xe9"));
}

// Whatever was allowed is held after the next start, and costs no other override its place.
TEST_F(OverDBTest, WhatWasSavedComesBack) {
    const Lines urls{"http://first.example", "http://last.example", "http://a.example/&amp;<&#65;]]><!--",
                     // What would be two lines, one of them for another site.
                     "http://a.example/x</%53ite>%0D%0A  <%53ite>http://other.example",
                     "http://a.example/%0D%0A</%53ite%4fverrides>%0D%0A", "http://a.example/%0a",
                     "http://a.example/a%0d", "http://a.example/%00", "http://a.example/'\"\xe9%09 x"};
    Add(urls);
    DB.SaveDB();
    // A load adds, so it lower-cases what was an escape.
    Lines held = DB.URLS();
    for (Text& url : held) url = LowerCase(url);
    EXPECT_EQ(Reloaded(), held);
    DB.LoadDB();
    EXPECT_TRUE(Log.Take().empty());
    for (const Text& url : urls) EXPECT_TRUE(DB.IsOverride(UrlDecode(url))) << url;
    EXPECT_FALSE(DB.IsOverride("http://other.example/"));
    DB.SaveDB();
    EXPECT_EQ(Storage.Contents.count(BadCopy), 0U);
}

// Of a file that is no XML only the lines that are damaged are lost.
TEST_F(OverDBTest, OfADamagedFileAllThatIsWholeIsTaken) {
    const std::tuple<Text, Lines, Text> cases[] = {
        // A line changed by hand, and one without its end.
        {Content("  <Site>http://a.example/<b</Site>\r\n  <Site>http://a.example/2\r\n"
                 "    <Site>http://a.example/?a&amp;b</Site>\r\n"),
         {"http://a.example/<b", "http://a.example/?a&b"},
         "2 overrides, 1 lost"},
        // Tags in a URL, no last line.
        {"  <Site>http://a.example/<%53ite>b</Site>\n  <Site>http://a.example/x<Site>\n</Site>",
         {"http://a.example/<Site>b", "http://a.example/x<site>\n"},
         "2 overrides, 0 lost"},
    };
    for (const auto& [file, urls, counts] : cases) {
        Storage.Contents = {{File, file}};
        DB.AddToDB("http://before.example");
        DB.LoadDB();
        EXPECT_EQ(DB.URLS(), urls) << file;
        const Lines lines = Log.Take();
        ASSERT_EQ(lines.size(), 1U) << file;
        EXPECT_TRUE(lines[0].starts_with("0 Override Database Load Error: -2147213504 XML line ")) << lines[0];
        EXPECT_TRUE(lines[0].ends_with("; read one by one: " + counts)) << lines[0];
        DB.SaveDB();
        EXPECT_EQ(Storage.Contents.at(BadCopy), file);
    }
}

// Whatever step of a save fails, the file has its old or its new content, and what did not load has its copy.
TEST_F(OverDBTest, NoStepOfASaveLeavesAMix) {
    for (const bool loads : {true, false}) {
        const Text before = loads ? Content("  <Site>http://old.example</Site>\r\n") : "broken";
        int failures = 0;
        for (int step = 1;; ++step) {
            Storage.Contents = {{File, before}};
            OverDB db(Storage, Time, File);
            Listen(db);
            db.LoadDB();
            db.AddToDB("http://new.example");
            Log.Take();
            Storage.FailAt(step);
            db.SaveDB();
            Storage.FailNoMore();
            if (Log.Take().empty()) break;
            ++failures;
            EXPECT_EQ(Storage.Contents.at(File), before) << step;
            for (const auto& [path, content] : Storage.Contents) EXPECT_TRUE(path == File || path == BadCopy) << path;
        }
        EXPECT_GE(failures, 4);
        EXPECT_EQ(Reloaded().size(), loads ? 2U : 1U);
        EXPECT_EQ(Storage.Contents[BadCopy], loads ? "" : before);
    }
    // A file that is in use is not taken for a missing one.
    const Text before = Storage.Contents[File];
    Storage.FailAt(1, ErrorNumber::PermissionDenied);
    DB.LoadDB();
    EXPECT_EQ(Log.Take().back(), "0 Override Database Load Error: 70 Permission denied");
    DB.SaveDB();
    EXPECT_EQ(Storage.Contents.at(BadCopy), before);
}

TEST_F(OverDBTest, ThePanelAddsWhatIsNotCovered) {
    // Adding works before the panel was set up.
    Panel.AddSite("Bank.Example/a/");
    EXPECT_EQ(Panel.ListSites, Lines{"http://Bank.Example/a"});
    EXPECT_FALSE(Panel.Change.Enabled || Panel.Remove.Enabled);
    Panel.AddSite("http://www.bank.example/ab");
    EXPECT_EQ(Shown, Lines{"64 URL entry http://www.bank.example/ab is already entered as a site override"});
    EXPECT_EQ(Reloaded(), Lines{"http://bank.example/a"});
    SiteOverridesPanel another{DB, *this, Log};
    another.Setup();
    EXPECT_EQ(another.ListSites, DB.URLS());
    Panel.Select(0);
    EXPECT_EQ(Panel.Change.Caption, "Allow site override access to the full site URL: Bank.Example");
    EXPECT_EQ(Panel.Remove.Caption, "Remove site override access to URL: http://Bank.Example/a");
    EXPECT_TRUE(Panel.Change.Enabled && Panel.Remove.Enabled);
    Panel.AddSite("httpfoo");
    Panel.Select(1);
    EXPECT_EQ(Log.Take(), (Lines{"1 OverDB.AddToDB: bad entry (httpfoo)",
                                 "0 Site Overrides MakeActions Error: 9 Subscript out of range"}));
}

TEST_F(OverDBTest, ThePanelWidensAndRemoves) {
    Add({"http://a.example/x", "http://b.example/1", "http://b.example/2"});
    Panel.Setup();
    Answer = 2;
    Panel.cmdChange();
    Panel.cmdRemove();
    EXPECT_EQ(DB.Count(), 3);
    EXPECT_EQ(Panel.ListSites, DB.URLS());
    Answer = 1;
    Panel.Select(1);
    Panel.cmdChange();
    EXPECT_EQ(Panel.ListSites[1], "http://b.example");
    EXPECT_FALSE(Panel.Change.Enabled);
    // The whole site is covered by now, so the narrow one goes; it was the last row.
    Panel.Select(2);
    Panel.cmdChange();
    EXPECT_EQ(Reloaded(), (Lines{"http://a.example/x", "http://b.example"}));
    EXPECT_EQ(Panel.Selected, 1);
    Panel.Select(0);
    Panel.cmdRemove();
    EXPECT_EQ(Panel.Remove.Caption, "Remove site override access to URL: http://b.example");
    Panel.cmdRemove();
    EXPECT_FALSE(Panel.ListEnabled || Panel.Change.Enabled || Panel.Remove.Enabled);
    EXPECT_EQ(Panel.Change.Caption + Panel.Remove.Caption, "");
    Panel.cmdRemove();
    EXPECT_EQ(Reloaded(), Lines{});
    EXPECT_EQ(Shown, (Lines{"1 Changing allow site override to: http://a.example?",
                            "1 plain: Removing site override: http://a.example/x?",
                            "1 Changing allow site override to: http://b.example?",
                            "1 Changed site override is already entered as: http://b.example\r\n Remove: "
                            "http://b.example/2?",
                            "1 plain: Removing site override: http://a.example/x?",
                            "1 plain: Removing site override: http://b.example?"}));
    Panel.AddSite("c.example");
    EXPECT_TRUE(Panel.ListEnabled);
}

TEST(HashOfKey, XorsLittleEndianWords) {
    for (const char* key : {"abcdefgh", "efghabcd", "12345678"}) EXPECT_EQ(HashSlots::HashOfKey(key), 201589764);
    EXPECT_EQ(HashSlots::HashOfKey("abcde"), 1684234756);
    EXPECT_EQ(HashSlots::HashOfKey("abc\x80"), -2140970399);
    EXPECT_EQ(HashSlots::HashOfKey("\xFF"), 255);
}

TEST(HashTable, RaisesWhereTheTermsAreBroken) {
    HashTable<int> table;
    EXPECT_EQ(Raised([&] { table.Item("", 1); }), 1001);
    EXPECT_EQ(Raised([&] { table.Add("abc\x80", 1); }), 9);
    EXPECT_EQ(Raised([&] { table.Remove("absent"); }), 5);
    EXPECT_EQ(Raised([&] { table.Values(); }), 9);
    // A negative hash that leaves no remainder lands in bucket 0.
    table.Add("aaaaaaaa", 8);
    table.Add(Text("\0\x04\0\x80", 4), 7);
    EXPECT_EQ(table.Values(), (std::vector<int>{8, 7}));
    EXPECT_EQ(Raised([&] { table.Add("aaaaaaaa", 9); }), 457);
    EXPECT_EQ(table.Item("aaaaaaaa"), 8);
    EXPECT_EQ(Raised([&] { table.IgnoreCase(true); }), 1001);
}

TEST(HashTable, Grows) {
    HashTable<int> table;
    for (int number = 1; number <= 5000; ++number) table.Add("key" + std::to_string(number), number);
    for (int number = 1; number <= 5000; ++number) ASSERT_EQ(table.Item("key" + std::to_string(number)), number);
    EXPECT_EQ(table.Values().size(), 5000U);
}

}  // namespace
}  // namespace tb
