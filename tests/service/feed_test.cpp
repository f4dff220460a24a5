#include <gmock/gmock.h>

#include <chrono>
#include <random>
#include <thread>

#include "fakes/RecordedLog.h"
#include "fakes/TestFolder.h"
#include "service/web/SiteFeed.h"
#include "sitedb/codec/Encryption.h"

namespace tb {
namespace {

// Applies update replies as the program does, and fails the test where the program would have refused a line.
struct ReplayingClient {
    Text Stamp = NoSitesStamp;
    // How often it had to start anew.
    int Restarts = 0;
    // "URL TAB category TAB validated", in the order of adding.
    std::vector<Text> Sites = {};

    // False when the reply said that there is nothing new.
    bool Apply(TextView reply) {
        if (reply.empty()) return false;
        RecordedLog log;
        Text plain;
        EXPECT_TRUE(ChkEncryptString(reply, plain, log));
        const std::vector<Text> lines = Split(plain, '\n');
        if (lines.size() == 2 && lines[1].empty()) {
            EXPECT_EQ(lines[0], Stamp);
            return false;
        }
        EXPECT_NE(lines[0], Stamp) << "what it has";
        const bool isAnew = lines.at(1) == "1";
        if (isAnew) {
            Sites.clear();
            ++Restarts;
        } else {
            EXPECT_LT(Stamp, lines[0]);
        }
        for (size_t index = 2; index + 1 < lines.size(); ++index) Change(lines[index], isAnew);
        Stamp = lines[0];
        return true;
    }

private:
    void Change(const Text& line, bool isAnew) {
        const Text url = line.substr(2, line.find('\t', 2) - 1);
        // A whole list is made of what is unlike by itself.
        const auto held =
            isAnew ? Sites.end()
                   : std::find_if(Sites.begin(), Sites.end(), [&](const Text& site) { return site.starts_with(url); });
        EXPECT_EQ(held == Sites.end(), line[0] == '+') << Quoted(line);
        if (line[0] == '+') {
            Sites.push_back(line.substr(2));
        } else if (held != Sites.end()) {
            Sites.erase(held);
        }
    }
};

class SiteFeedTest : public testing::Test {
protected:
    // Asks until there is nothing new; in between others may change the list.
    void BringUpToDate(ReplayingClient& client) {
        for (int exchange = 0; client.Apply(*Feed().ReplySince(client.Stamp)); ++exchange) ASSERT_LT(exchange, 10);
    }
    std::vector<Text> Listed() {
        std::vector<Text> sites;
        History.ForEachSite([&](const Site& site) {
            sites.push_back(site.Url + "\t" + site.Category + "\t" + site.Validated);
            return true;
        });
        return sites;
    }
    void Import(int first, int last, const Text& category) {
        std::vector<Site> sites;
        for (int number = first; number <= last; ++number) {
            sites.push_back({"http://s" + std::to_string(number) + ".example", category, "v"});
        }
        History.Import(sites);
    }
    // Made when it is first asked for.
    SiteFeed& Feed() {
        if (!m_Feed) m_Feed = std::make_unique<SiteFeed>(Folder.Path(), Log);
        return *m_Feed;
    }

    TestFolder Folder;
    RecordedLog Log;
    Date Now = Date(CivilDate{2026, 11, 21, 9, 0, 0});
    ServiceStore Store{Folder.Path(), ServiceStore::Opening::OrNew};
    SiteHistory History{Store, [this] { return Now; }};

private:
    std::unique_ptr<SiteFeed> m_Feed;
};

// Clients that ask now and then, under a clock that also stands still or goes back, come to the same list in the same
// order, whatever they missed.
TEST_F(SiteFeedTest, AllClientsAgreeInTheEnd) {
    for (unsigned seed = 1; seed <= 4; ++seed) {
        std::mt19937 random(seed);
        const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
        std::vector<ReplayingClient> clients(5);
        for (int step = 0; step < 150; ++step) {
            Now = Now.PlusSeconds(below(180) - 60);
            const int first = below(40);
            switch (below(12)) {
            case 0: History.Remove({"http://s" + std::to_string(first) + ".example"}); break;
            // Enough to cut the record.
            case 1: Import(0, 600 + first, std::to_string(below(3))); break;
            case 2: clients[static_cast<size_t>(below(5))] = {}; break;
            default: Import(first, first + below(5), std::to_string(below(3)));
            }
            BringUpToDate(clients[static_cast<size_t>(below(4))]);
        }
        for (const Text& stamp :
             {Text("209901010000"), Text("202611210001"), Text(""), Text("no stamp"), Text(5000, '9')}) {
            ReplayingClient& stranger = clients.emplace_back();
            stranger.Stamp = stamp;
            stranger.Sites = {"http://of.another.service\t2\tv"};
        }
        for (ReplayingClient& client : clients) {
            BringUpToDate(client);
            EXPECT_EQ(client.Sites, Listed());
            EXPECT_EQ(client.Stamp, History.Latest().Stamp);
        }
        EXPECT_TRUE(Log.Lines.empty());
    }
}

// It takes no list away.
TEST_F(SiteFeedTest, SaysNothingBeforeTheFirstPublication) {
    for (const char* stamp : {NoSitesStamp, "202611010000"}) EXPECT_EQ(*Feed().ReplySince(stamp), "") << stamp;
    // The whole list of many sites is made behind the first request for it.
    Import(1, 10'001, "2");
    ReplayingClient client;
    client.Sites = {"http://held.example\t2\tv"};
    client.Apply(*Feed().ReplySince("202611010000"));
    EXPECT_THAT(client.Sites.size(), testing::AnyOf(1, 10'001));
}

TEST_F(SiteFeedTest, TellsOnlyWhatChanged) {
    ReplayingClient client;
    Import(1, 3, "2");
    BringUpToDate(client);
    Import(2, 2, "9");
    BringUpToDate(client);
    EXPECT_EQ(client.Restarts, 1);
    EXPECT_EQ(Feed().ReplySince(client.Stamp), Feed().ReplySince(client.Stamp)) << "made once";
    // One without a stamp may hold remains, so it starts anew although the record reaches back to the beginning.
    client.Stamp = NoSitesStamp;
    BringUpToDate(client);
    EXPECT_EQ(client.Restarts, 2);
    // A list that was emptied on purpose is one, for those who start anew, too.
    History.Remove({"http://s1.example", "http://s2.example", "http://s3.example"});
    client.Stamp = "unknown";
    BringUpToDate(client);
    EXPECT_EQ(client.Sites.size(), 0U);
    EXPECT_EQ(client.Restarts, 3);
}

TEST_F(SiteFeedTest, MakesALongListOnceAndGoesOnAnsweringMeanwhile) {
    Import(1, 10'001, "2");
    const auto whole = Feed().ReplySince(NoSitesStamp);
    for (int number = 0; number < 100; ++number) EXPECT_EQ(Feed().ReplySince("unknown"), whole);
    EXPECT_EQ(Feed().WholeListsMade(), 1);
    ReplayingClient client;
    BringUpToDate(client);
    // Cuts the record, so that all clients must start anew, once the keeper is done.
    Import(1, 10'001, "9");
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (client.Stamp != History.Latest().Stamp && std::chrono::steady_clock::now() < deadline) {
        client.Apply(*Feed().ReplySince(client.Stamp));
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_EQ(client.Sites, Listed());
    EXPECT_EQ(Feed().WholeListsMade(), 2);
    // While the next one is made, the last one and what came behind it are the same list.
    Import(20'000, 20'000, "2");
    ReplayingClient late;
    BringUpToDate(late);
    EXPECT_EQ(late.Sites, Listed());
}

}  // namespace
}  // namespace tb
