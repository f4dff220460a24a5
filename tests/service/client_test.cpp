#include <gmock/gmock.h>

#include "components/tbSender/tbSender.h"
#include "components/tbXML/Document.h"
#include "fakes/TestFolder.h"
#include "refdata/RefDataRig.h"
#include "refdata/cUpdate.h"
#include "service/LoopbackHttp.h"
#include "service/web/HttpServer.h"
#include "service/web/ServicePages.h"
#include "sitedb/EvilDB.h"

namespace tb {
namespace {

using testing::Contains;
using testing::Not;

// A program's classes, and the pages of a service that has just been made.
class NewServiceTest : public testing::Test, public EvilDBHost {
protected:
    NewServiceTest() {
        Pages pages;
        AddSitePages(pages, Feed);
        AddUpdatePages(pages, Shelf);
        for (Page& page : pages) {
            page.Answer = [this, answer = std::move(page.Answer)](const Question& question) {
                ++Requests;
                return answer(question);
            };
        }
        Server = std::make_unique<HttpServer>(std::move(pages), ServerLog);
        const Text server =
            "<Server WEIGHT='100' ACTIVE='Y'>http://127.0.0.1:" + std::to_string(Server->Start({"127.0.0.1"}, 0)) +
            "</Server></E>";
        Document servers;
        servers.LoadXML("<SERVERS><E NAME='EVILDBSVR'>" + server + "<E NAME='UpdatesSVR'>" + server + "</SERVERS>");
        Rig.Program.Settings->ReplaceGlobals("SERVERS", servers.Root());
        Sites = std::make_unique<EvilDB>(Rig.System.Files, *this, "/app/Data");
        Sites->LogMessage.Connect([this](const Text& line, LogLevel level) { Rig.Log.WriteLog(line, level); });
    }

    Text CategoryName(const Text&) override { return "Category"; }
    bool IsDebugMode() override { return true; }
    ElementPtr UpdateServers() override { return Access.Servers("EVILDBSVR"); }
    std::unique_ptr<Sender> MakeUpdateSender() override { return Access.MakeSender(); }

    // The text of an update reply.
    Text Told(const Text& stamp) {
        const SiteFeed::Framed reply = Feed.ReplySince(stamp);
        Text plain;
        EXPECT_TRUE(reply->empty() || ChkEncryptString(*reply, plain, Rig.Log));
        return plain;
    }
    // The stamp after an update.
    Text Updated() {
        Sites->Update("A-1");
        return Sites->LastTimestamp();
    }
    bool Blocks(const Text& url) {
        Text category;
        Text validated;
        return Sites->IsEvil(url, category, validated);
    }

    TestFolder Folder;
    RecordedLog ServerLog;
    ServiceStore Store{Folder.Path(), ServiceStore::Opening::OrNew};
    SiteHistory History{Store};
    SiteFeed Feed{Folder.Path(), ServerLog};
    UpdateShelf Shelf{Folder.Path()};
    std::atomic<int> Requests = 0;
    std::unique_ptr<HttpServer> Server;
    LoopbackHttp Net;
    RefDataRig Rig;
    ServiceAccess Access{
        Rig.Program, Rig.Log, [this] {
            return std::make_unique<tbSender>(tbSender::Parts{Net, Rig.System.Random, Rig.System.Files, {}});
        }};
    std::unique_ptr<EvilDB> Sites;
};

TEST_F(NewServiceTest, TakesNoListAwayBeforeItHasPublishedOne) {
    Sites->AddToDB("http://held.example", "2", "v");
    Sites->SaveDB("202611010000", Sites->Fingerprint());
    for (const Text stamp : {"200001010000", "202611010000"}) {
        if (stamp != Sites->LastTimestamp()) Sites->LoadDB("/app/Data/TBDB" + stamp + ".BIN", 0);
        EXPECT_EQ(Updated(), stamp);
        EXPECT_TRUE(Blocks("http://held.example/x"));
        EXPECT_THAT(Rig.Log.Lines, Contains("1 MalDB.Update: No data - TS=" + stamp));
    }
    // From the first publication on it tells what is so, also when the list is emptied on purpose.
    History.Import({{"http://new.example", "2", "v"}});
    EXPECT_EQ(Told("202611010000"), History.Latest().Stamp + "\n1\n+\thttp://new.example\t2\tv\n");
    History.Remove({"http://new.example"});
    EXPECT_EQ(Told("202611010000"), History.Latest().Stamp + "\n1\n");
}

// The whole list of many sites is made behind the first request for it.
TEST_F(NewServiceTest, TakesNoListAwayWhileItsFirstOneIsMade) {
    std::vector<Site> sites;
    for (int number = 0; number < 10'001; ++number) {
        sites.push_back({"http://s" + std::to_string(number) + ".example", "2", "v"});
    }
    History.Import(sites);
    const Text told = Told("202611010000");
    EXPECT_TRUE(told.empty() || told.size() > sites.size()) << told;
}

TEST_F(NewServiceTest, IsAskedOnceForAnUpdateThatIsNotPublished) {
    for (const Text test : {"", "beta"}) {
        Rig.Log.Lines.clear();
        Rig.Program.Settings->WriteXMLString("MAIN", "TestVersion", test);
        Requests = 0;
        cUpdate updater(Access, [] { return false; });
        updater.LogMessage.Connect([this](const Text& line, LogLevel level) { Rig.Log.WriteLog(line, level); });
        EXPECT_EQ(updater.DoCheckForUpdates(false), -1);
        EXPECT_EQ(Requests, 1);
        EXPECT_THAT(Rig.Log.Lines, Contains("0 No update manifest found"));
        EXPECT_THAT(Rig.Log.Lines, Not(Contains(testing::HasSubstr("rror"))));
    }
    EXPECT_EQ(ServerLog.Lines, std::vector<Text>());
}

}  // namespace
}  // namespace tb
