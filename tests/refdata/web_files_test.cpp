#include "refdata/WebFiles.h"

#include <gtest/gtest.h>

#include "refdata/DailyFiles.h"
#include "refdata/RefDataRig.h"
#include "refdata/ServerLists.h"

namespace tb {
namespace {

const Text Good = EncryptStringChk("<BEGIN/>");

struct WebFilesRig : RefDataRig {
    WebFilesRig() {
        Place(ReferencePath, "old");
        Program.Settings->WriteXMLString("MAIN", "KEY", "A-1");
    }
    bool Fetch() {
        return WebFiles(Access).GetFileFromWebService(MakeServerElement(1, "S", "t", "", ""), "page", "reference.bin");
    }
};

TEST(GetFileFromWebService, FetchesOnlyWhatIsLater) {
    const Text line = "Last-Modified: Sun, 06 Nov 1994 08:49:37 GMT\r\n";
    const Text typeMismatch = "0 GetFileFromWebService Error: 13 Type mismatch";
    const struct {
        Text Head;
        std::int64_t FileIsLaterBy;
        bool Fetches;
        Lines Log;
    } cases[] = {
        {"HTTP/1.1 200 OK\r\n" + line + "Server: x\r\n\r\n", 0, true, {}},
        {line, 1, false, {}},
        {"last-modified: Sun, 06 Nov 1994 08:49:37 GMT\r\n", 0, false, {"0 Error retrieving file head from page"}},
        {"", 0, false, {"0 Error retrieving file head from page"}},
        {"Last-Modified: Sunday, 06-Nov-94 08:49:37 GMT\r\n", 0, false, {typeMismatch}},
        {"Last-Modified:", 0, false, {typeMismatch}}};
    for (const auto& [head, laterBy, fetches, log] : cases) {
        WebFilesRig rig;
        rig.Web.Heads["reference.bin"] = head;
        rig.Web.Replies["page"] = Good;
        rig.System.Files.Dates[ReferencePath].Modified = EarlyDate.PlusSeconds(laterBy);
        EXPECT_EQ(rig.Fetch(), fetches) << head;
        EXPECT_EQ(rig.System.Files.Contents, (World{{ReferencePath, fetches ? Good : "old"}})) << head;
        EXPECT_EQ(rig.Log.Take(), log) << head;
        EXPECT_EQ(rig.Asked(), fetches ? (Lines{"HEAD reference.bin", "POST page"}) : Lines{"HEAD reference.bin"});
        EXPECT_EQ(rig.Web.Requests.back().Key, "A-1");
    }
}

// A reply that is not the whole frame never touches the good file.
TEST(GetFileFromWebService, KeepsTheOldFileFromABadReply) {
    WebFilesRig rig;
    rig.Web.Heads["reference.bin"] = LaterHead;
    for (const Text& reply : {Text(), Good.substr(0, Good.size() - 1), Good + "\r\n", LowerCase(Good)}) {
        rig.Web.Replies["page"] = reply;
        EXPECT_FALSE(rig.Fetch()) << Quoted(reply);
        EXPECT_EQ(rig.System.Files.Contents, (World{{ReferencePath, "old"}})) << Quoted(reply);
        const Lines log = rig.Log.Take();
        ASSERT_FALSE(log.empty()) << Quoted(reply);
        EXPECT_EQ(log.back(), "0 Error with ChkEncryptString, decrypt: " + std::to_string(reply.size()));
    }
    rig.Web.Errors["page"] = "no answer";
    EXPECT_FALSE(rig.Fetch());
    EXPECT_EQ(rig.Log.Take(), (Lines{"0 Error retreiving file from page no answer"}));
    EXPECT_EQ(rig.System.Files.Contents, (World{{ReferencePath, "old"}}));
}

TEST(GetDailyFiles, FetchesWhatTheServersHaveLater) {
    WebFilesRig rig;
    DailyFiles daily(rig.Access);
    const auto look = [&](const Text& file) {
        rig.Web.Requests.clear();
        daily.GetDailyFiles("referencesvr", file, file);
        return rig.Asked();
    };
    EXPECT_EQ(look("reference.bin"), Lines());
    EXPECT_EQ(rig.Log.Take(), (Lines{"0 Error GetDailyFiles: 5 Invalid procedure call or argument"}));
    rig.AddService("ReferenceSVR");
    EXPECT_EQ(look("reference.bin"), Lines{"HEAD reference.bin"});
    rig.Offer("reference.bin", Good);
    EXPECT_EQ(look("reference.bin"), (Lines{"HEAD reference.bin", "HEAD reference.bin", "POST reference.bin"}));
    EXPECT_EQ(rig.System.Files.Contents[ReferencePath], Good);
    rig.Offer("defaults.bin", Good);
    EXPECT_EQ(look("defaults.bin").size(), 3U);
    EXPECT_EQ(rig.Web.Requests[0].Service, "DefaultsSVR") << "whatever service is named";
}

}  // namespace
}  // namespace tb
