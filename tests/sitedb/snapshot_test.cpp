#include <gtest/gtest.h>

#include "fakes/AnotherCodePage.h"
#include "sitedb/ListOfSites.h"
#include "sitedb/codec/cCRC32.h"

namespace tb {
namespace {

const Text NewStamp = "202611210900";
const Text OldStamp = "202611200900";
const Text NewFile = "TBDB202611210900.BIN";
const Text OldFile = "TBDB202611200900.BIN";

Text Number(std::uint32_t value) {
    Text bytes;
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift);
    return bytes;
}

// A snapshot of these records, as the format has it.
Text FileOf(const Lines& records) {
    Text entries;
    std::int32_t fingerprint = 0;
    for (const Text& record : records) {
        const Text scrambled = ScrambleByLength(record);
        fingerprint = cCRC32().GetStringCrc32(scrambled, fingerprint);
        entries += Number(static_cast<std::uint32_t>(scrambled.size())) + scrambled;
    }
    return Text("\x01\0", 2) + Number(12) + ScrambleByLength(NewStamp) +
           Number(static_cast<std::uint32_t>(fingerprint)) + Number(static_cast<std::uint32_t>(records.size())) +
           entries;
}

class SnapshotTest : public testing::Test, protected ListOfSites {
protected:
    // Writes a snapshot of so many sites, as a program of its own.
    void Save(const Text& stamp, int count) {
        Renew();
        for (int index = 0; index < count; ++index) {
            Add("http://site" + std::to_string(index) + ".example/" + std::to_string(index % 3), "2", "v" + stamp);
        }
        ASSERT_TRUE(DB->SaveDB(stamp, DB->Fingerprint()));
        ASSERT_EQ(DB->Count(), count);
        Renew();
        Log.Take();
    }
    bool Loads() { return DB->LoadDB(File(NewStamp), 0); }
    bool Restores() { return DB->RestoreDB(Corrupt); }
    Text& NewContent() { return Storage.Contents[File(NewStamp)]; }

    bool Corrupt = false;
};

TEST_F(SnapshotTest, HasTheLayoutOfItsFormat) {
    Add("http://evil.example", "2", "11/21/2026");
    ASSERT_TRUE(DB->SaveDB(NewStamp, DB->Fingerprint()));
    EXPECT_EQ(NewContent(), FileOf({"http://evil.example\t2\t11/21/2026"}));
    EXPECT_EQ(Snapshots(), NewStamp);
}

// The order of the entries, and with it the fingerprint, is that of their scrambled hosts, which are no text.
TEST_F(SnapshotTest, IsTheSameInEveryCodePage) {
    // Between them the scrambled hosts have every byte beyond ASCII.
    for (const char first : TextView("89abcdef")) {
        for (const char second : TextView("0123456789abcdef")) Add(Text("http://%") + first + second + ".example");
    }
    ASSERT_TRUE(DB->SaveDB(NewStamp, DB->Fingerprint()));
    const AnotherCodePage page;
    Renew();
    EXPECT_TRUE(Loads());
    EXPECT_EQ(DB->LiveCount(), 128);
}

TEST_F(SnapshotTest, LoadsBackInTheSameOrder) {
    Save(NewStamp, 250);
    const Text before = NewContent();
    EXPECT_TRUE(Restores());
    EXPECT_FALSE(Corrupt);
    EXPECT_EQ(DB->LastTimestamp(), NewStamp);
    EXPECT_EQ(DB->Count(), 250);
    EXPECT_EQ(Hit("http://www.site249.example/0/x"), "v" + NewStamp);
    EXPECT_EQ(Log.Take(), Lines{"0 Malicious Database Load " + NewFile + ": OK"});
    ASSERT_TRUE(DB->SaveDB(NewStamp, DB->Fingerprint()));
    EXPECT_EQ(NewContent(), before);
    Debug = true;
    EXPECT_TRUE(Restores());
    EXPECT_EQ(Log.Take(), Lines{"0 Malicious Database Load " + NewFile + ": 250"});
}

TEST_F(SnapshotTest, AWrongFingerprintOrStampIsDeletedAndTheNextOneLoads) {
    Save(OldStamp, 3);
    Save(NewStamp, 5);
    NewContent().back() ^= 1;
    Storage.Contents[File("202611220000")] = Storage.Contents[File(OldStamp)];
    Storage.Contents["Data/TBDB202611220000.BINX"] = "another program's";
    EXPECT_TRUE(Restores());
    EXPECT_TRUE(Corrupt);
    EXPECT_EQ(DB->LastTimestamp(), OldStamp);
    EXPECT_EQ(DB->LiveCount(), 3);
    EXPECT_EQ(Log.Take(),
              (Lines{"1 MalDB.RestoreDB: Corrupt file - TBDB202611220000.BIN",
                     "1 MalDB.RestoreDB: Corrupt file - " + NewFile, "0 Malicious Database Load " + OldFile + ": OK"}));
    EXPECT_EQ(Snapshots(), OldStamp + " TBDB202611220000.BINX");
}

// A file that cannot be read to its end, or is of another version, is not destroyed and ends the search.
TEST_F(SnapshotTest, AFileOfAnotherVersionOrCutShortStays) {
    Save(NewStamp, 4);
    const Text good = NewContent();
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
    Save(OldStamp, 2);
    for (const auto& [content, error] : cases) {
        NewContent() = content;
        Renew();
        EXPECT_FALSE(Restores());
        EXPECT_FALSE(Corrupt);
        EXPECT_EQ(DB->LastTimestamp(), "200001010000");
        Lines expected;
        if (!error.empty()) expected.push_back("0 Malicious Database Load Error: " + error);
        expected.push_back("1 MalDB.RestoreDB: Corrupt file - " + NewFile);
        expected.push_back("0 Malicious Database Restore Error: 70 Permission denied");
        EXPECT_EQ(Log.Take(), expected);
        EXPECT_EQ(Snapshots(), OldStamp + " " + NewStamp);
        EXPECT_EQ(Storage.OpenCount(), 0U) << "from here on it can be replaced, and pruned in its turn";
    }
}

TEST_F(SnapshotTest, EntriesThatTheRulesRefuseRejectTheFile) {
    NewContent() = FileOf({"http://a.example\t2\tv"});
    EXPECT_TRUE(Loads());
    for (const Lines& records : {Lines{"http://a.example\t2\tv", "http://a.example\t2\tw"},
                                 {"http://A.example\t2\tv"},
                                 {"http://a.example\t2"},
                                 {"a.example\t2\tv"},
                                 // Slashes behind the URL make no host.
                                 {"a.example\t2\t//v"},
                                 {"http:/\t2\t/a.example/"}}) {
        NewContent() = FileOf(records);
        EXPECT_FALSE(Loads()) << records.back();
        EXPECT_EQ(DB->LiveCount(), 0);
    }
    NewContent() = FileOf({"http://a.example\t2\t/v"});
    EXPECT_TRUE(Loads());
    EXPECT_TRUE(Hits("http://a.example")) << "nor do they end one";
}

TEST_F(SnapshotTest, SavingFailsWithALineAndLeavesTheFile) {
    Save(NewStamp, 2);
    const auto before = Storage.Contents;
    Add("http://evil.example");
    Storage.ReadOnly.insert(File(NewStamp));
    EXPECT_FALSE(DB->SaveDB(NewStamp, 0));
    EXPECT_FALSE(DB->SaveDB("../evil", 0));
    EXPECT_EQ(Storage.Contents, before);
    EXPECT_EQ(DB->Count(), 0);
    Storage.Folders = {""};
    EXPECT_FALSE(DB->SaveDB(OldStamp, 0));
    EXPECT_EQ(Log.Take(), (Lines{"0 Malicious Database Save Error: 70 Permission denied",
                                 "0 Malicious Database Save Error: 75 Path/File access error",
                                 "0 Malicious Database Save Error: 76 Path not found"}));
}

}  // namespace
}  // namespace tb
