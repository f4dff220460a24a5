#include <gtest/gtest.h>

#include "fakes/AnotherCodePage.h"
#include "fakes/TestFolder.h"
#include "sitedb/ListOfSites.h"
#include "sitedb/codec/Encryption.h"
#include "sitedb/codec/cCRC32.h"

namespace tb {
namespace {

using Lines = std::vector<Text>;

const Text NewStamp = "202611210900";
const Text OldStamp = "202611200900";
const Text NewFile = "TBDB202611210900.BIN";
const Text OldFile = "TBDB202611200900.BIN";

Text Number(std::uint32_t value) {
    Text bytes;
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift);
    return bytes;
}

// Writes a snapshot of `count` sites.
void Save(const TestFolder& folder, const Text& stamp, int count) {
    ListOfSites sites(folder.Path());
    for (int index = 0; index < count; ++index) {
        sites.Add("http://site" + std::to_string(index) + ".example/" + std::to_string(index % 3), "2", "v" + stamp);
    }
    ASSERT_TRUE(sites.DB.SaveDB(stamp, count == 0 ? 0 : sites.DB.Fingerprint()));
    ASSERT_EQ(sites.DB.Count(), count);
}

TEST(Snapshot, HasTheLayoutOfItsFormat) {
    const TestFolder folder;
    ListOfSites sites(folder.Path());
    sites.Add("http://evil.example", "2", "11/21/2026");
    const std::int32_t fingerprint = sites.DB.Fingerprint();
    ASSERT_TRUE(sites.DB.SaveDB(NewStamp, fingerprint));
    const Text entry = ScrambleByLength("http://evil.example\t2\t11/21/2026");
    EXPECT_EQ(fingerprint, cCRC32().GetStringCrc32(entry, 0));
    EXPECT_EQ(folder.Read(NewFile), Text("\x01\0", 2) + Number(12) + ScrambleByLength(NewStamp) +
                                        Number(static_cast<std::uint32_t>(fingerprint)) + Number(1) +
                                        Number(static_cast<std::uint32_t>(entry.size())) + entry);
    EXPECT_EQ(folder.Names(), NewFile);
}

// The order of the entries, and with it the fingerprint, is that of their scrambled hosts, which are no text.
TEST(Snapshot, IsTheSameInEveryCodePage) {
    const TestFolder folder;
    ListOfSites sites(folder.Path());
    // Between them the scrambled hosts have every byte beyond ASCII.
    for (const char first : TextView("89abcdef")) {
        for (const char second : TextView("0123456789abcdef"))
            sites.Add(Text("http://%") + first + second + ".example");
    }
    ASSERT_TRUE(sites.DB.SaveDB(NewStamp, sites.DB.Fingerprint()));
    const AnotherCodePage page;
    ListOfSites loaded(folder.Path());
    EXPECT_TRUE(loaded.DB.LoadDB(folder.Path() / NewFile, 0));
    EXPECT_EQ(loaded.DB.LiveCount(), 128);
}

TEST(Snapshot, LoadsBackInTheSameOrder) {
    const TestFolder folder;
    Save(folder, NewStamp, 250);
    ListOfSites sites(folder.Path());
    Lines percents;
    sites.DB.EvilLoadPercent.Connect([&](std::int16_t percent) { percents.push_back(std::to_string(percent)); });
    bool corrupt = true;
    EXPECT_TRUE(sites.DB.RestoreDB(corrupt));
    EXPECT_FALSE(corrupt);
    EXPECT_EQ(percents, (Lines{"0", "40", "80", "100"}));
    EXPECT_EQ(sites.DB.LastTimestamp(), NewStamp);
    EXPECT_EQ(sites.DB.Count(), 250);
    EXPECT_EQ(sites.Hit("http://www.site249.example/0/x"), "v" + NewStamp);
    EXPECT_EQ(sites.Log.Take(), Lines{"0 Malicious Database Load " + NewFile + ": OK"});
    const Text before = folder.Read(NewFile);
    ASSERT_TRUE(sites.DB.SaveDB(NewStamp, sites.DB.Fingerprint()));
    EXPECT_EQ(folder.Read(NewFile), before);
    sites.Debug = true;
    EXPECT_TRUE(sites.DB.RestoreDB(corrupt));
    EXPECT_EQ(sites.Log.Take(), Lines{"0 Malicious Database Load " + NewFile + ": 250"});
}

TEST(Snapshot, AnEmptyListIsSavedAndLoadsWithItsLine) {
    const TestFolder folder;
    Save(folder, NewStamp, 0);
    EXPECT_EQ(folder.Read(NewFile).size(), 26U);
    ListOfSites sites(folder.Path());
    bool corrupt = false;
    EXPECT_TRUE(sites.DB.RestoreDB(corrupt));
    EXPECT_EQ(sites.Log.Take(), (Lines{"0 Malicious Database Fingerprint Error: 9 Subscript out of range",
                                       "0 Malicious Database Load " + NewFile + ": OK"}));
}

TEST(Snapshot, AWrongFingerprintOrStampIsDeletedAndTheNextOneLoads) {
    const TestFolder folder;
    Save(folder, OldStamp, 3);
    Save(folder, NewStamp, 5);
    Text damaged = folder.Read(NewFile);
    damaged.back() = static_cast<char>(damaged.back() ^ 1);
    folder.Write(NewFile, damaged);
    folder.Write("TBDB202611220000.BIN", folder.Read(OldFile));
    folder.Write("TBDB202611220000.BINX", "another program's");
    ListOfSites sites(folder.Path());
    bool corrupt = false;
    EXPECT_TRUE(sites.DB.RestoreDB(corrupt));
    EXPECT_TRUE(corrupt);
    EXPECT_EQ(sites.DB.LastTimestamp(), OldStamp);
    EXPECT_EQ(sites.DB.LiveCount(), 3);
    EXPECT_EQ(sites.Log.Take(),
              (Lines{"1 MalDB.RestoreDB: Corrupt file - TBDB202611220000.BIN",
                     "1 MalDB.RestoreDB: Corrupt file - " + NewFile, "0 Malicious Database Load " + OldFile + ": OK"}));
    EXPECT_EQ(folder.Names(), OldFile + " TBDB202611220000.BINX");
}

// A file that cannot be read to its end, or is of another version, is not destroyed and ends the search.
TEST(Snapshot, AFileOfAnotherVersionOrCutShortStays) {
    const TestFolder whole;
    Save(whole, NewStamp, 4);
    const Text good = whole.Read(NewFile);
    const Text entryPart = good.substr(26);
    const std::vector<std::pair<Text, Text>> cases{
        {"\x02" + good.substr(1), ""},
        {good.substr(0, good.size() - 1), "62 Input past end of file"},
        {good.substr(0, 20), "62 Input past end of file"},
        {"", "62 Input past end of file"},
        {good.substr(0, 2) + Number(0x7FFFFFFF) + good.substr(6), "62 Input past end of file"},
        {good.substr(0, 2) + Number(0xFFFFFFFF) + good.substr(6), "5 Invalid procedure call or argument"},
        {good.substr(0, 2) + Number(0) + good.substr(6), "9 Subscript out of range"},
        {good.substr(0, 22) + Number(0xFFFFFFFF) + entryPart, "5 Invalid procedure call or argument"},
        {good.substr(0, 22) + Number(5) + entryPart, "62 Input past end of file"},
        {good.substr(0, 26) + Number(0) + entryPart.substr(4), "9 Subscript out of range"},
    };
    for (const auto& [content, error] : cases) {
        const TestFolder folder;
        Save(folder, OldStamp, 2);
        folder.Write(NewFile, content);
        ListOfSites sites(folder.Path());
        bool corrupt = true;
        EXPECT_FALSE(sites.DB.RestoreDB(corrupt));
        EXPECT_FALSE(corrupt);
        EXPECT_EQ(sites.DB.LastTimestamp(), "200001010000");
        Lines expected;
        if (!error.empty()) expected.push_back("0 Malicious Database Load Error: " + error);
        expected.push_back("1 MalDB.RestoreDB: Corrupt file - " + NewFile);
        expected.push_back("0 Malicious Database Restore Error: 70 Permission denied");
        EXPECT_EQ(sites.Log.Take(), expected);
        EXPECT_EQ(folder.Names(), OldFile + " " + NewFile);
        // From here on it can be replaced, and pruned in its turn.
        sites.Storage.Delete(folder.Path() / NewFile);
    }
}

TEST(Snapshot, EntriesThatTheRulesRefuseRejectTheFile) {
    const TestFolder folder;
    const auto write = [&](const std::vector<Text>& records) {
        Text entries;
        std::int32_t fingerprint = 0;
        for (const Text& record : records) {
            const Text scrambled = ScrambleByLength(record);
            fingerprint = cCRC32().GetStringCrc32(scrambled, fingerprint);
            entries += Number(static_cast<std::uint32_t>(scrambled.size())) + scrambled;
        }
        folder.Write(NewFile, Text("\x01\0", 2) + Number(12) + ScrambleByLength(NewStamp) +
                                  Number(static_cast<std::uint32_t>(fingerprint)) +
                                  Number(static_cast<std::uint32_t>(records.size())) + entries);
    };
    ListOfSites sites(folder.Path());
    write({"http://a.example\t2\tv"});
    EXPECT_TRUE(sites.DB.LoadDB(folder.Path() / NewFile, 0));
    for (const std::vector<Text>& records : {std::vector<Text>{"http://a.example\t2\tv", "http://a.example\t2\tw"},
                                             {"http://A.example\t2\tv"},
                                             {"http://a.example\t2"},
                                             {"a.example\t2\tv"}}) {
        write(records);
        EXPECT_FALSE(sites.DB.LoadDB(folder.Path() / NewFile, 0)) << records.back();
        EXPECT_EQ(sites.DB.LiveCount(), 0);
    }
}

TEST(Snapshot, SavingFailsWithALineAndLeavesTheFile) {
    const TestFolder folder;
    Save(folder, NewStamp, 2);
    const Text before = folder.Read(NewFile);
    ListOfSites sites(folder.Path());
    sites.Add("http://evil.example");
    std::filesystem::permissions(folder.Path() / NewFile, std::filesystem::perms::owner_read);
    EXPECT_FALSE(sites.DB.SaveDB(NewStamp, 0));
    EXPECT_FALSE(sites.DB.SaveDB("../evil", 0));
    EXPECT_EQ(sites.Log.Take(), (Lines{"0 Malicious Database Save Error: 70 Permission denied",
                                       "0 Malicious Database Save Error: 75 Path/File access error"}));
    EXPECT_EQ(folder.Read(NewFile), before);
    EXPECT_EQ(folder.Names(), NewFile);
    EXPECT_EQ(sites.DB.Count(), 0);
    ListOfSites nowhere(folder.Path() / "absent");
    EXPECT_FALSE(nowhere.DB.SaveDB(NewStamp, 0));
    EXPECT_EQ(nowhere.Log.Take(), Lines{"0 Malicious Database Save Error: 76 Path not found"});
    bool corrupt = false;
    EXPECT_FALSE(nowhere.DB.RestoreDB(corrupt));
    EXPECT_TRUE(nowhere.Log.Take().empty());
}

}  // namespace
}  // namespace tb
