#include <gtest/gtest.h>

#include "fakes/Raised.h"
#include "sitedb/ListOfSites.h"

namespace tb {
namespace {

TEST(Prune, KeepsFiveAndTheNewestThatIsADayOld) {
    const Text newest = "11300600";
    // Stamps without their year, and those of them that go.
    const std::vector<std::pair<Lines, Lines>> cases{
        {{"11300100", "11300200", "11300300", "11300400", "11300500", newest}, {"11300100"}},
        {{"11281200", "11300200", "11300300", "11300400", "11300500", newest}, {"11300200"}},
        {{"11250000", "11280000", "11300200", "11300300", "11300400", "11300500", newest}, {"11250000", "11300200"}},
        {{"11290600", "11290601", "11300300", "11300400", "11300500", newest}, {"11290601"}},
        {{"11250000", "11280000", "11300300", "11300400", newest}, {}},
    };
    for (const auto& [stamps, deleted] : cases) {
        ListOfSites rig;
        Lines expected;
        for (const Text& stamp : stamps) {
            rig.Storage.Contents[ListOfSites::File("2005" + stamp)];
            expected.push_back("1 MalDB.PruneFiles: TBDB2005" + stamp + ".BIN");
        }
        for (const Text& stamp : deleted) {
            rig.Storage.ReadOnly.insert(ListOfSites::File("2005" + stamp));
            expected.push_back("1 MalDB.PruneFiles - Delete: TBDB2005" + stamp + ".BIN");
        }
        rig.DB->PruneFiles(5, "2005" + newest);
        EXPECT_EQ(rig.Log.Take(), expected);
        for (const Text& stamp : deleted) EXPECT_FALSE(rig.Storage.Exists(ListOfSites::File("2005" + stamp)));
        EXPECT_EQ(rig.Storage.Contents.size(), stamps.size() - deleted.size());
    }
}

TEST(Prune, SparesTheNewestNotLaterThanOneDayBefore) {
    const auto retained = [](const Lines& stamps, const Text& newest) {
        std::vector<EvilDB::FileName> names;
        for (const Text& stamp : stamps) names.emplace_back("TBDB" + stamp + ".BIN");
        return EvilDB::FindRetainedFile(names, newest).string();
    };
    EXPECT_EQ(retained({"200602280001", "200602280000", "200602270000"}, "200603010000"), "TBDB200602280000.BIN");
    EXPECT_EQ(retained({"200402290130", "200402290131"}, "200403010130"), "TBDB200402290130.BIN");
    EXPECT_EQ(retained({"200501010000"}, "200501012359"), "");
    for (const char* stamp : {"", "2005", "20051130060a", "200513300600", "+20511300600", "200502290000"}) {
        EXPECT_EQ(Raised([&] { retained({}, stamp); }), 13) << stamp;
    }
    EXPECT_EQ(FormatDateTime(EvilDB::StampToDate("200402290130")), "02/29/2004 01:30:00");
}

TEST(Prune, LooksAtSnapshotsOnly) {
    ListOfSites rig;
    for (const char* name :
         {"TBDB2.BIN", "tbdb3.bin", "TBDB.BIN", "TBDB9.BINX", "TBDB9.BIN.tmp~", "XTBDB9.BIN", "TBD.BIN"}) {
        rig.Storage.Contents[FakeFiles::Path("Data") / name];
    }
    EXPECT_EQ(rig.DB->MaxFileVersion(), "tbdb3.bin");
    EXPECT_EQ(rig.DB->MinFileVersion(""), "TBDB.BIN");
    EXPECT_EQ(rig.DB->MinFileVersion("TBDB.BIN"), "TBDB2.BIN");
    // It never deletes the one that it spares.
    rig.DB->PruneFiles(0, "200511300600");
    EXPECT_EQ(rig.Snapshots(), "TBD.BIN TBDB2.BIN TBDB9.BIN.tmp~ TBDB9.BINX XTBDB9.BIN");
    EXPECT_EQ(rig.Log.Take().back(), "0 Malicious Database Prune Error: 53 File not found");
    rig.Storage.FailAt(1, ErrorNumber::DeviceIO);
    EXPECT_EQ(rig.DB->MaxFileVersion(), "");
    rig.Storage.FailAt(1, ErrorNumber::DeviceIO);
    EXPECT_EQ(rig.DB->MinFileVersion(""), "");
    EXPECT_EQ(rig.Log.Take(), (Lines{"0 Malicious Database MaxFileVersion Error: 57 Device I/O error",
                                     "0 Malicious Database MinFileVersion Error: 57 Device I/O error"}));
}

TEST(Prune, TakesAFileThatCouldNotBeReadInItsTurn) {
    ListOfSites rig;
    rig.Update("202611210900\n1\n+\thttp://evil.example\t2\tv\n");
    rig.Storage.Contents[ListOfSites::File("202611210900")].pop_back();
    const auto files = rig.Storage.Contents;
    // The service comes with the file's own stamp, or with later ones only.
    for (const int first : {0, 1}) {
        rig.Storage.Contents = files;
        rig.Renew();
        rig.Reply().clear();
        rig.DB->Load("A-1");
        rig.Log.Take();
        for (int minute = first; minute <= 6; ++minute) {
            for (const Text& line : rig.Update("20261121090" + std::to_string(minute) + "\n0\n+\thttp://a\t2\tv\n"))
                EXPECT_NE(line[0], '0') << line;
        }
        EXPECT_EQ(rig.Snapshots(), "202611210902 202611210903 202611210904 202611210905 202611210906");
    }
}

}  // namespace
}  // namespace tb
