#include "refdata/ServerLists.h"

#include <gtest/gtest.h>

#include "base/numbers.h"
#include "components/tbXML/Document.h"
#include "fakes/Raised.h"
#include "refdata/RefDataRig.h"

namespace tb {
namespace {

TEST(MakeServerElement, SharesTheRequestsAmongNumberedServers) {
    const struct {
        std::int16_t Count;
        Text Weight;
    } cases[] = {{10, "10"}, {3, "33.3333333333333"}, {7, "14.2857142857143"}};
    for (const auto& [count, weight] : cases) {
        const ElementPtr service = MakeServerElement(count, "X", "http://{?}.a/{?}", "", "{?}");
        EXPECT_EQ(service->Count(), count);
        EXPECT_EQ((*service->begin())->XML(), "<Server WEIGHT='" + weight + "' ACTIVE='Y'>http://1.a/1</Server>\r\n");
        EXPECT_EQ((*(service->end() - 1))->Body(), "http://" + std::to_string(count) + ".a/" + std::to_string(count));
    }
    EXPECT_EQ(MakeServerElement(4, "X", "", "http://one/", "{?}")->XML(),
              "<ELEMENT Name='X'><Server WEIGHT='25' ACTIVE='Y'>http://one/</Server>\r\n</ELEMENT>\r\n");
    EXPECT_EQ(MakeServerElement(1, "X", "t", "s", "")->Count(), 2);
    EXPECT_EQ(Raised([] { MakeServerElement(0, "X", "", "s", ""); }), 11);
}

struct ServerListsRig : RefDataRig {
    // The servers of the service "WebSvr", joined, behind the result.
    Text List(const Text& children) {
        Document document;
        document.LoadXML("<SERVERS><E NAME='WEBSVR'>" + children + "</E></SERVERS>");
        Program.Settings->ReplaceGlobals("SERVERS", document.Root());
        return Ask("WebSvr", "http://default/");
    }
    Text Ask(const Text& name, const Text& otherwise) {
        std::vector<Text> servers;
        const bool found = ServerLists(Access).MakeServersArray("Servers", name, otherwise, servers);
        return ToText(found) + " " + Join(servers, ",");
    }
};

TEST(MakeServersArray, PutsTheActiveServersInRandomOrder) {
    ServerListsRig rig;
    const Text four = "<S ACTIVE='Y'>A</S><S ACTIVE='Y'>B</S><S ACTIVE='Y'>C</S><S ACTIVE='Y'>D</S>";
    const struct {
        std::deque<double> Chances;
        Text Order;
    } cases[] = {{{0, 0, 0, 0}, "B,C,D,A"},
                 {{0.999, 0.999, 0.999, 0.999}, "B,C,D,A"},
                 {{0.5, 0.5, 0.5, 0.5}, "B,D,A,C"},
                 {{0.1, 0.9, 0.3, 0.6}, "A,B,D,C"}};
    for (const auto& [chances, order] : cases) {
        rig.System.Random.Coming = chances;
        EXPECT_EQ(rig.List(four), "True " + order);
    }
    EXPECT_EQ(rig.List("<S ACTIVE='y'>A</S><S>B</S><S ACTIVE='Y'>C</S>"), "True C");
    EXPECT_EQ(rig.List("<S ACTIVE='N'>A</S>"), "False ");
    EXPECT_EQ(rig.List(""), "False ");
    EXPECT_EQ(rig.Ask("other", "http://default/"), "True http://default/");
    EXPECT_EQ(rig.Ask("other", ""), "False ");
    EXPECT_EQ(rig.Log.Take(), Lines());
    rig.MakeSettings();
    EXPECT_EQ(rig.Ask("WebSvr", "http://default/"), "False ");
    EXPECT_EQ(rig.Log.Take(), (Lines{"0 Error Make Servers Array: 5 Invalid procedure call or argument"}));
}

TEST(ServerLists, AreOnlineAsTheSystemSays) {
    ServerListsRig rig;
    EXPECT_TRUE(ServerLists(rig.Access).IsOnline());
    rig.Web.Online = false;
    EXPECT_FALSE(ServerLists(rig.Access).IsOnline());
}

}  // namespace
}  // namespace tb
