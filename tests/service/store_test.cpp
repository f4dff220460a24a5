#include <gmock/gmock.h>

#include <sys/stat.h>

#include <fstream>

#include "base/errors.h"
#include "fakes/TestFolder.h"
#include "service/store/Documents.h"
#include "service/store/Reports.h"
#include "service/store/ServiceStore.h"
#include "service/store/SiteHistory.h"
#include "sitedb/codec/Encryption.h"

namespace tb {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

Date At(int day, int hour, int minute, int second = 0) { return Date(CivilDate{2026, 11, day, hour, minute, second}); }

std::vector<Site> Sites(int first, int last, const Text& category = "2") {
    std::vector<Site> sites;
    for (int number = first; number <= last; ++number) {
        sites.push_back({"http://s" + std::to_string(number) + ".example", category, "v"});
    }
    return sites;
}

int RightsOf(const std::filesystem::path& file) {
    return static_cast<int>(std::filesystem::status(file).permissions());
}

TEST(SiteEntry, IsWhatClientsHold) {
    const std::pair<Text, std::vector<Text>> cases[] = {
        {"HTTP://Evil.Example/A//", {"http://evil.example/a"}},
        {"evil.example/x", {"http://evil.example/x", "https://evil.example/x"}},
        {"evil.example/?u=http://x", {"http://evil.example/?u=http://x", "https://evil.example/?u=http://x"}},
        {"ftp://evil.example", {"ftp://evil.example"}},
        {"http://\xC9vil.example/%41+%09", {"http://\xE9vil.example/%41+%09"}},
        {"http:%2f%2fevil.example", {"http://http:%2f%2fevil.example", "https://http:%2f%2fevil.example"}},
    };
    for (const auto& [given, urls] : cases) EXPECT_EQ(SiteUrlsOf(given), urls) << given;
    EXPECT_EQ(SitesOf("a.example", " 9 ", "").size(), 2U);
}

TEST(SiteEntry, RefusesWhatClientsWould) {
    const Text longest(32767 - Text("http://a.example/\t2\t").size(), 'x');
    EXPECT_EQ(SitesOf("http://a.example/" + longest, "2", "").size(), 1U);
    const std::pair<Site, Text> cases[] = {
        {{"http:///x", "2", ""}, "no host"},
        {{"http://a.example", "none", ""}, "no number"},
        {{"http://a\tb/", "2", ""}, "tab or line feed"},
        {{"http://a.example", "2", "a\nb"}, "tab or line feed"},
        {{"http://a.example/" + longest, "2", "1"}, "longer than"},
    };
    for (const auto& [site, message] : cases) {
        Text refusal;
        Trap([&, given = site] { SitesOf(given.Url, given.Category, given.Validated); },
             [&](const RuntimeError& error) { refusal = error.what(); });
        EXPECT_THAT(refusal, HasSubstr(message)) << Quoted(site.Url);
    }
}

TEST(Stamps, RiseWhateverTheClockSays) {
    EXPECT_EQ(NextStamp(NoSitesStamp, At(21, 9, 31, 59)), "202611210931");
    EXPECT_EQ(NextStamp("202611210931", At(21, 9, 31)), "202611210932");
    EXPECT_EQ(NextStamp("202612312359", At(21, 9, 31)), "202701010000");
}

class SiteHistoryTest : public testing::Test {
protected:
    std::vector<Text> Changes() {
        std::vector<Text> lines;
        History.ForEachChange([&](const Change& change) {
            lines.push_back(std::to_string(change.Number) + (change.IsAdded ? "+" : "-") + change.Entry.Url + "," +
                            change.Entry.Category);
        });
        return lines;
    }

    TestFolder Folder;
    Date Now = At(21, 9, 0);
    ServiceStore Store{Folder.Path() / "new", ServiceStore::Opening::OrNew};
    SiteHistory History{Store, [this] { return Now; }};
};

TEST_F(SiteHistoryTest, RecordsWhatDiffers) {
    EXPECT_EQ(History.Latest().Stamp, NoSitesStamp);
    const auto import = [&](const std::vector<Site>& sites) {
        const ImportResult result = History.Import(sites);
        return std::vector{result.Added, result.Changed, result.Unchanged, result.Repeated};
    };
    EXPECT_THAT(
        import({{"http://s1.example", "2", "v"}, {"http://s2.example", "2", "v"}, {"http://s1.example", "9", "v"}}),
        ElementsAre(2, 0, 0, 1));
    EXPECT_THAT(import(Sites(1, 2)), ElementsAre(0, 0, 2, 0));
    EXPECT_EQ(History.Latest().Stamp, "202611210900");
    EXPECT_THAT(import({{"http://s1.example", "9", "v"}, {"http://s3.example", "2", "v"}}), ElementsAre(1, 1, 0, 0));
    EXPECT_THAT(History.Remove({"http://s2.example", "http://s2.example", "http://none.example"}),
                ElementsAre("http://s2.example"));
    EXPECT_TRUE(History.Remove({"http://s2.example"}).empty());
    EXPECT_THAT(Changes(), ElementsAre("1+http://s1.example,2", "2+http://s2.example,2", "3-http://s1.example,2",
                                       "4+http://s1.example,9", "5+http://s3.example,2", "6-http://s2.example,2"));
    EXPECT_EQ(History.Latest().Stamp, "202611210902");
    EXPECT_EQ(History.Latest().Sites, 2);
}

TEST_F(SiteHistoryTest, ForgetsWholePublicationsBeyondItsLimit) {
    History.Import(Sites(1, 500));
    History.Import(Sites(501, 700));
    EXPECT_EQ(History.Recorded().size(), 3U);
    // 1,100 changes, of which 1,000 may stay: the first publication goes, its stamp stays.
    History.Import(Sites(1, 200, "9"));
    EXPECT_EQ(History.Recorded().front().Stamp, "202611210900");
    EXPECT_EQ(Changes().size(), 600U);
    // More than the limit at once.
    History.Import(Sites(1, 700, "8"));
    EXPECT_EQ(History.Recorded().size(), 1U);
    EXPECT_TRUE(Changes().empty());
    EXPECT_EQ(History.Latest().Sites, 700);
}

TEST_F(SiteHistoryTest, CountsTheReportsOfEachVersion) {
    Reports reports(Store);
    for (const char* version : {"1.0.2", "1.0.1", "1.0.2", "1.0.0"}) reports.Add({{"key", version, "6.1", "9", Now}});
    EXPECT_THAT(reports.ByProgram(), ElementsAre(Pair("1.0.2", 2), Pair("1.0.0", 1), Pair("1.0.1", 1)));
    Store.Prepare("UPDATE reports SET number = number + ?1 WHERE number > 1").Bind(1, Reports::Limit - 4).Run();
    reports.Add({{"key", "1.0.3", "6.1", "9", Now}});
    EXPECT_EQ(reports.Count(), 4) << "the oldest has gone";
}

// Mails of people are in them.
TEST_F(SiteHistoryTest, LiesInFilesOfItsOwnersAlone) {
    const mode_t before = ::umask(0);
    ServiceStore made(Folder.Path() / "made", ServiceStore::Opening::OrNew);
    ::umask(before);
    EXPECT_TRUE(made.IsNew());
    SiteHistory(made).Import(Sites(1, 1));
    const std::filesystem::path file = ServiceStoreFile(Folder.Path() / "made");
    const std::vector<std::filesystem::path> files{file, file.string() + "-wal", file.string() + "-shm"};
    for (const auto& one : files) EXPECT_EQ(RightsOf(one), 0600) << one;
    // One of a time when others could read it.
    for (const auto& one : files) std::filesystem::permissions(one, std::filesystem::perms(0664));
    const ServiceStore opened(Folder.Path() / "made", ServiceStore::Opening::OrNew);
    EXPECT_FALSE(opened.IsNew());
    for (const auto& one : files) EXPECT_EQ(RightsOf(one), 0600) << one;
}

TEST_F(SiteHistoryTest, RefusesFilesThatAreNotItsOwn) {
    EXPECT_THROW(ServiceStore(Folder.Path() / "absent", ServiceStore::Opening::Existing), RuntimeError);
    Folder.Write("service.db", "this is no database, however long it may be, and it stays what it is");
    std::filesystem::permissions(Folder.Path() / "service.db", std::filesystem::perms(0644));
    EXPECT_THROW(ServiceStore(Folder.Path(), ServiceStore::Opening::OrNew), RuntimeError);
    EXPECT_EQ(RightsOf(Folder.Path() / "service.db") & 0077, 0044) << "another program's";
    Store.Run("PRAGMA user_version = 99");
    EXPECT_THROW(ServiceStore(Folder.Path() / "new", ServiceStore::Opening::Existing), RuntimeError);
}

TEST_F(SiteHistoryTest, KeepsDocumentsThatClientsCanUse) {
    Documents documents(Store, [this] { return Now; });
    const Text xml = "<DEFAULTS Version='20261121'><X NAME='TIMERS'/></DEFAULTS>";
    // Again in the same second: clients fetch only what is later.
    for (int time = 0; time < 2; ++time) documents.PublishDefaults(xml);
    EXPECT_ANY_THROW(documents.PublishDefaults("<A><B/></A>"));
    EXPECT_EQ(documents.Find(DefaultsFile)->Framed, EncryptStringChk(xml));
    EXPECT_EQ(documents.Find(DefaultsFile)->Version, "20261121");
    EXPECT_EQ(documents.Find(DefaultsFile)->Modified, Now.PlusSeconds(1));
    documents.PublishReference("<R><CATEGORIES/><SUBMISSIONS/><DISPOSITIONS/><COUNTRIES/></R>");
    EXPECT_THROW(documents.PublishReference("<R><CATEGORIES/><SUBMISSIONS/><DISPOSITIONS/></R>"), RuntimeError);
    EXPECT_TRUE(documents.Find(ReferenceFile));
}

}  // namespace
}  // namespace tb
