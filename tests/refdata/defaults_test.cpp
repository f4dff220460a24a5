#include <gtest/gtest.h>

#include "refdata/RefDataRig.h"
#include "refdata/ServerLists.h"
#include "shell/helpers/SettingValues.h"

namespace tb {
namespace {

Text Document(const Text& version, const Text& groups = {}) {
    return EncryptStringChk("<DEFAULTS" + version + ">" + groups + "</DEFAULTS>");
}

TEST(LoadDefaults, MakesEachGroupTheGlobalOfItsName) {
    RefDataRig rig;
    rig.Place(DefaultsPath, Golden("defaults"));
    EXPECT_EQ(Golden("defaults").substr(0, 9) + std::to_string(Golden("defaults").size()), "793C6EDFG405");
    EXPECT_EQ(GetTimerInterval(rig.Program, "EVILDB_INTERVAL", 60), 60000);
    EXPECT_TRUE(rig.DefaultsData.LoadDefaults(""));
    EXPECT_EQ(GetTimerInterval(rig.Program, "EVILDB_INTERVAL", 60), 2000);
    EXPECT_EQ(rig.StringOf("DEFAULTVERSION"), "20261121");
    std::vector<Text> servers;
    EXPECT_TRUE(ServerLists(rig.Access).MakeServersArray("Servers", "EvilDBSvr", "", servers));
    EXPECT_EQ(servers.size(), 2U);
    // A later load replaces what it brings and leaves the rest.
    rig.Place(DefaultsPath, Document("", "<T NAME='timers'><E NAME='EVILDB_INTERVAL'>3</E></T>"));
    EXPECT_TRUE(rig.DefaultsData.LoadDefaults(""));
    EXPECT_EQ(GetTimerInterval(rig.Program, "EVILDB_INTERVAL", 60), 3000);
    EXPECT_EQ(rig.StringOf("DEFAULTVERSION"), "20261121");
    EXPECT_EQ(rig.CountOf("SERVERS"), 1);
    EXPECT_EQ(rig.Log.Take(), Lines());
    EXPECT_TRUE(rig.Web.Requests.empty());
}

TEST(LoadDefaults, FetchesTwiceAtMostForAVersionThatIsTooLow) {
    const Lines versionError{"0 Load defaults version error"};
    const struct {
        Text Have;
        Text Offered;
        Text MinVersion;
        bool Loads;
        size_t Fetches;
        Lines Log;
    } cases[] = {{" Version='20050215'", " Version='20050215'", "20060101", false, 2, versionError},
                 {" Version='20050215'", " Version='20060101'", "20060101", true, 1, {}},
                 {" Version='9'", "", "20050215", true, 0, {}},
                 {"", "", "1", false, 2, versionError},
                 {"", "", "", true, 0, {}}};
    for (const auto& [have, offered, minVersion, loads, fetches, log] : cases) {
        RefDataRig rig;
        rig.Place(DefaultsPath, Document(have));
        rig.Offer("defaults.bin", Document(offered));
        EXPECT_EQ(rig.DefaultsData.LoadDefaults(minVersion), loads) << have << minVersion;
        EXPECT_EQ(rig.Web.Requests.size(), fetches * 2) << have << minVersion;
        EXPECT_EQ(rig.Log.Take(), log) << have << minVersion;
    }
}

TEST(CheckLoadDefaults, StopsTheStartOnlyForAFileThatDoesNotLoad) {
    const Text missing = "0 Missing Defaults File: defaults.bin";
    const Text format = "0 Load defaults format error";
    const struct {
        const char* What;
        std::optional<Text> File;
        std::optional<Text> Offered;
        bool Stops;
        Lines Log;
    } cases[] = {{"a good file", Document(""), {}, false, {}},
                 {"a bad file", "0G", {}, true, {"0 Error ChkEncryptString: 9 Subscript out of range", format}},
                 {"no file, no network", {}, {}, false, {missing, "0 Error retrieving file head from defaults.bin"}},
                 {"no file", {}, Document(" Version='8'"), false, {missing}},
                 {"no file, a bad document",
                  {},
                  EncryptStringChk(" "),
                  true,
                  {missing, "0 Error Load Defaults: -2147213504 XML line 1: there is no root element"}}};
    for (const auto& [what, file, offered, stops, log] : cases) {
        RefDataRig rig;
        if (file) rig.Place(DefaultsPath, *file);
        if (offered) rig.Offer("defaults.bin", *offered);
        EXPECT_EQ(rig.DefaultsData.CheckLoadDefaults(), stops) << what;
        EXPECT_EQ(rig.Log.Take(), log) << what;
        EXPECT_EQ(rig.StringOf("DEFAULTVERSION"), offered && !stops ? "8" : "none") << what;
    }
}

}  // namespace
}  // namespace tb
