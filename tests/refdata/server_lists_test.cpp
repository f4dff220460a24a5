#include "refdata/ServerLists.h"

#include <gtest/gtest.h>

#include "base/numbers.h"
#include "components/tbXML/Document.h"
#include "fakes/Raised.h"
#include "refdata/RefDataRig.h"
#include "refdata/VersionReport.h"
#include "refdata/mFileInfo.h"

namespace tb {
namespace {

TEST(MakeServerElement, SharesTheRequestsAmongNumberedServers) {
    const ElementPtr service = MakeServerElement(7, "X", "http://{?}.a/{?}", "", "{?}");
    EXPECT_EQ(service->Count(), 7);
    EXPECT_EQ((*(service->end() - 1))->XML(), "<Server WEIGHT='14.2857142857143' ACTIVE='Y'>http://7.a/7</Server>\r\n");
    EXPECT_EQ(MakeServerElement(4, "X", "", "http://one/", "{?}")->XML(),
              "<ELEMENT Name='X'><Server WEIGHT='25' ACTIVE='Y'>http://one/</Server>\r\n</ELEMENT>\r\n");
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
    EXPECT_EQ(rig.Ask("WebSvr", "http://default/"), "False ");
    EXPECT_EQ(rig.Log.Take(), (Lines{"0 Error Make Servers Array: 5 Invalid procedure call or argument"}));
    const Text four = "<S ACTIVE='Y'>A</S><S ACTIVE='Y'>B</S><S ACTIVE='Y'>C</S><S ACTIVE='Y'>D</S>";
    rig.System.Random.Coming = {0, 0, 0, 0, 0.5, 0.5, 0.5, 0.5, 0.1, 0.9, 0.3, 0.6};
    for (const Text order : {"B,C,D,A", "B,D,A,C", "A,B,D,C"}) EXPECT_EQ(rig.List(four), "True " + order);
    EXPECT_EQ(rig.List("<S ACTIVE='y'>A</S><S>B</S><S ACTIVE='Y'>C</S>"), "True C");
    EXPECT_EQ(rig.List(""), "False ");
    EXPECT_EQ(rig.Ask("other", "http://default/"), "True http://default/");
    EXPECT_EQ(rig.Ask("other", ""), "False ");
    EXPECT_EQ(rig.Log.Take(), Lines());
}

TEST(SendVersions, PostsWhatRunsHere) {
    RefDataRig rig;
    rig.Program.Settings->WriteXMLString("MAIN", "KEY", "A-1");
    rig.System.Registry.Keys["SOFTWARE\\MICROSOFT\\INTERNET EXPLORER"]["VERSION"] = "9.11.9600.18376";
    VersionReport report(rig.Access);
    rig.AddService("OtherSVR");
    EXPECT_FALSE(report.SendVersions());
    EXPECT_TRUE(rig.Web.Requests.empty());
    rig.AddService("VersionsSVR");
    EXPECT_TRUE(report.SendVersions());
    const FakeWeb::Request& request = rig.Web.Requests.at(0);
    EXPECT_EQ(request.Operation + " " + request.Page, "POST Versions.aspx");
    EXPECT_EQ(request.Body, "Key=A%2D1&AppVer=1.0.0&OSVer=6.1.7601.2&IEVer=9.11.9600.18376&OEVer=0&OutVer=0");
    EXPECT_EQ(request.Key, "A%2D1");
    rig.Web.Replies["Versions.aspx"] = Text(Sender::SmallReplyLimit + 1, 'x');
    EXPECT_FALSE(report.SendVersions()) << "more than an answer can be";
    rig.Web.Errors["Versions.aspx"] = "no answer";
    EXPECT_FALSE(report.SendVersions());
    EXPECT_EQ(rig.Log.Take().back(), "1 Send versions error: no answer");
}

TEST(SetFileDates, SetsThemAndKeepsTheAttributesWhateverStepFails) {
    const std::filesystem::path path = "/app/a.dll";
    for (int step = 1; step <= 4; ++step) {
        FakeSystem rig;
        rig.Files.Contents[path] = "x";
        rig.Files.ReadOnly.insert(path);
        rig.Files.FailAt(step);
        // Clearing, setting, restoring.
        EXPECT_EQ(Raised([&] { SetFileDates(rig.Files, path, Date(1), Date(3), Date(2), true); }), step <= 3 ? 61 : 0);
        EXPECT_EQ(rig.Files.IsReadOnly(path), step != 3) << step;
        EXPECT_EQ(rig.Files.Dates[path].Modified, step >= 3 ? Date(2) : Date()) << step;
    }
}

}  // namespace
}  // namespace tb
