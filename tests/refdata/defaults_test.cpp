// The defaults, and how a data file comes from the servers.
#include <gtest/gtest.h>

#include "refdata/RefDataRig.h"
#include "refdata/ServerLists.h"
#include "refdata/WebFiles.h"
#include "shell/helpers/SettingValues.h"

namespace tb {
namespace {

Text Document(const Text& version, const Text& groups = {}) {
    return EncryptStringChk("<DEFAULTS" + version + ">" + groups + "</DEFAULTS>");
}

TEST(LoadDefaults, MakesEachGroupTheGlobalOfItsName) {
    RefDataRig rig;
    const Text golden = Golden("defaults");
    rig.Place(DefaultsPath, golden);
    EXPECT_EQ(golden.substr(0, 9) + std::to_string(golden.size()), "793C6EDFG405");
    EXPECT_TRUE(rig.DefaultsData.LoadDefaults(""));
    EXPECT_EQ(GetTimerInterval(rig.Program, "EVILDB_INTERVAL", 60), 2000);
    EXPECT_EQ(rig.StringOf("DEFAULTVERSION"), "20261121");
    // A later load replaces what it brings and leaves the rest.
    rig.Place(DefaultsPath, Document("", "<T NAME='timers'><E NAME='EVILDB_INTERVAL'>3</E></T>"));
    EXPECT_TRUE(rig.DefaultsData.LoadDefaults(""));
    EXPECT_EQ(GetTimerInterval(rig.Program, "EVILDB_INTERVAL", 60), 3000);
    EXPECT_EQ(rig.StringOf("DEFAULTVERSION"), "20261121");
    EXPECT_EQ(rig.CountOf("SERVERS"), 1);
    EXPECT_EQ(rig.Log.Take(), Lines());
}

TEST(LoadDefaults, FetchesTwiceAtMostForAVersionThatIsTooLow) {
    for (const Text offered : {"20050215", "20060101"}) {
        RefDataRig rig;
        rig.Place(DefaultsPath, Document(" Version='20050215'"));
        rig.Offer("defaults.bin", Document(" Version='" + offered + "'"));
        const bool loads = offered == "20060101";
        EXPECT_EQ(rig.DefaultsData.LoadDefaults("20060101"), loads);
        EXPECT_EQ(rig.Web.Requests.size(), loads ? 2U : 4U);
        EXPECT_EQ(rig.Log.Take(), loads ? Lines() : Lines{"0 Load defaults version error"});
    }
}

TEST(CheckLoadDefaults, StopsTheStartOnlyForAFileThatDoesNotLoad) {
    const Text missing = "0 Missing Defaults File: defaults.bin";
    const Text format = "0 Load defaults format error";
    const Text noRoot = "0 Error Load Defaults: -2147213504 XML line 1: there is no root element";
    // By the file here and the one at the servers.
    const std::tuple<Text, Text, bool, Lines> cases[] = {
        {"0G", "", true, {"0 Error ChkEncryptString: 9 Subscript out of range", format}},
        {"", "", false, {missing, "0 Error retrieving file head from defaults.bin"}},
        {"", Document(" Version='8'"), false, {missing}},
        {"", EncryptStringChk(" "), true, {missing, noRoot}}};
    for (const auto& [file, offered, stops, log] : cases) {
        RefDataRig rig;
        if (!file.empty()) rig.Place(DefaultsPath, file);
        if (!offered.empty()) rig.Offer("defaults.bin", offered);
        EXPECT_EQ(rig.DefaultsData.CheckLoadDefaults(), stops) << file << offered;
        EXPECT_EQ(rig.Log.Take(), log);
        EXPECT_EQ(rig.StringOf("DEFAULTVERSION"), !offered.empty() && !stops ? "8" : "none");
    }
}

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
    const std::tuple<Text, std::int64_t, bool, Lines> cases[] = {
        {"HTTP/1.1 200 OK\r\n" + line + "Server: x\r\n\r\n", 0, true, {}},
        {line, 1, false, {}},
        {"last-modified: Sun, 06 Nov 1994 08:49:37 GMT\r\n", 0, false, {"0 Error retrieving file head from page"}},
        {"Last-Modified:", 0, false, {"0 GetFileFromWebService Error: 13 Type mismatch"}}};
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
    for (const Text& reply : {Text(), Good.substr(0, Good.size() - 1), Good + "\r\n"}) {
        rig.Web.Replies["page"] = reply;
        EXPECT_FALSE(rig.Fetch()) << Quoted(reply);
        EXPECT_EQ(rig.Log.Lines.back(), "0 Error with ChkEncryptString, decrypt: " + std::to_string(reply.size()));
    }
    rig.Web.Errors["page"] = "no answer";
    EXPECT_FALSE(rig.Fetch());
    EXPECT_EQ(rig.Log.Lines.back(), "0 Error retreiving file from page no answer");
    EXPECT_EQ(rig.System.Files.Contents, (World{{ReferencePath, "old"}}));
}

TEST(GetDailyFiles, FetchesWhatTheServersHaveLater) {
    WebFilesRig rig;
    EXPECT_EQ(rig.Look("reference.bin"), Lines());
    EXPECT_EQ(rig.Log.Take(), (Lines{"0 Error GetDailyFiles: 5 Invalid procedure call or argument"}));
    rig.AddService("ReferenceSVR");
    EXPECT_EQ(rig.Look("reference.bin"), Lines{"HEAD reference.bin"});
    rig.Offer("reference.bin", Good);
    EXPECT_EQ(rig.Look("reference.bin"), (Lines{"HEAD reference.bin", "HEAD reference.bin", "POST reference.bin"}));
    EXPECT_EQ(rig.System.Files.Contents[ReferencePath], Good);
    rig.Offer("defaults.bin", Good);
    EXPECT_EQ(rig.Look("defaults.bin").size(), 3U);
    EXPECT_EQ(rig.Web.Requests[0].Service, "DefaultsSVR") << "whatever service is named";
}

}  // namespace
}  // namespace tb
