#include <gtest/gtest.h>

#include <random>

#include "base/bytes.h"
#include "base/numbers.h"
#include "fakes/AnotherCodePage.h"
#include "sitedb/ListOfSites.h"
#include "sitedb/codec/cCRC32.h"
#include "urlcheck/url/UrlDecode.h"

namespace tb {
namespace {

const Text NewStamp = "202611210900";
const Text OldStamp = "202611200900";
const Text NewFile = "TBDB202611210900.BIN";

Text Number(std::uint32_t value) {
    Text bytes(sizeof value, '\0');
    PutLittleEndian(value, bytes.data(), bytes.size());
    return bytes;
}

// A snapshot of these records, as the format has it.
Text FileOf(const Lines& records, const Text& stamp = NewStamp) {
    Text entries;
    std::int32_t fingerprint = 0;
    for (const Text& record : records) {
        const Text scrambled = ScrambleByLength(record);
        fingerprint = cCRC32().GetStringCrc32(scrambled, fingerprint);
        entries += Number(static_cast<std::uint32_t>(scrambled.size())) + scrambled;
    }
    return Text("\x01\0", 2) + Number(12) + ScrambleByLength(stamp) + Number(static_cast<std::uint32_t>(fingerprint)) +
           Number(static_cast<std::uint32_t>(records.size())) + entries;
}

// The list as it was designed, without an index: scrambled domains, case ignored, in 1024 chains that grow at the tail,
// each with its records.
class PlainModel {
public:
    void Change(bool adds, const Text& url, const Text& domain, const Text& rest) {
        const Text key = UpperCase(ScrambleByLength(domain));
        const std::int32_t bucket = HashSlots::HashOfKey(key) % 1024;
        int birth = ++m_Changes;
        for (auto held = m_Entries.begin(); held != m_Entries.end(); ++held) {
            if (held->Bucket != bucket || held->Key != key) continue;
            birth = held->Birth;
            if (held->Url != url) continue;
            if (!adds) m_Entries.erase(held);
            return;
        }
        if (adds) m_Entries.push_back({bucket, birth, key, url, url + rest});
    }
    Lines Records() {
        std::stable_sort(m_Entries.begin(), m_Entries.end(), [](const Entry& left, const Entry& right) {
            return std::pair(left.Bucket, left.Birth) < std::pair(right.Bucket, right.Birth);
        });
        Lines records;
        for (const Entry& entry : m_Entries) records.push_back(entry.Record);
        return records;
    }

private:
    struct Entry {
        std::int32_t Bucket;
        // The change that brought the key.
        int Birth;
        Text Key, Url, Record;
    };
    std::vector<Entry> m_Entries;
    int m_Changes = 0;
};

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

TEST_F(SnapshotTest, AWrongFingerprintOrStampIsDeletedAndTheNextOneLoads) {
    Save(OldStamp, 3);
    Save(NewStamp, 5);
    NewContent().back() ^= 1;
    Storage.Contents[File("202611220000")] = Storage.Contents[File(OldStamp)];
    EXPECT_TRUE(Restores());
    EXPECT_TRUE(Corrupt);
    EXPECT_EQ(DB->LastTimestamp(), OldStamp);
    EXPECT_EQ(DB->LiveCount(), 3);
    EXPECT_EQ(Log.Take(), (Lines{"1 MalDB.RestoreDB: Corrupt file - TBDB202611220000.BIN",
                                 "1 MalDB.RestoreDB: Corrupt file - " + NewFile,
                                 "0 Malicious Database Load TBDB202611200900.BIN: OK"}));
    EXPECT_EQ(Snapshots(), OldStamp);
}

// A file that cannot be read to its end, or is of another version, is not destroyed and ends the search.
TEST_F(SnapshotTest, AFileOfAnotherVersionOrCutShortStays) {
    Save(NewStamp, 4);
    const Text good = NewContent();
    const std::pair<Text, Text> cases[] = {
        {"\x02" + good.substr(1), ""},
        {good.substr(0, good.size() - 1), "62 Input past end of file"},
        {good.substr(0, 2) + Number(0x7FFFFFFF) + good.substr(6), "62 Input past end of file"},
        {good.substr(0, 2) + Number(0xFFFFFFFF) + good.substr(6), "5 Invalid procedure call or argument"},
        {good.substr(0, 22) + Number(0xFFFFFFFF) + good.substr(26), "5 Invalid procedure call or argument"},
        {good.substr(0, 26) + Number(0) + good.substr(30), "9 Subscript out of range"},
    };
    Save(OldStamp, 2);
    for (const auto& [content, error] : cases) {
        NewContent() = content;
        Renew();
        EXPECT_FALSE(Restores() || Corrupt);
        Lines expected{"1 MalDB.RestoreDB: Corrupt file - " + NewFile,
                       "0 Malicious Database Restore Error: 70 Permission denied"};
        if (!error.empty()) expected.insert(expected.begin(), "0 Malicious Database Load Error: " + error);
        EXPECT_EQ(Log.Take(), expected);
        EXPECT_EQ(Snapshots(), OldStamp + " " + NewStamp);
        EXPECT_EQ(Storage.OpenCount(), 0U) << "from here on it can be replaced, and pruned in its turn";
    }
}

TEST_F(SnapshotTest, HasItsLayoutAndNoEntriesThatTheRulesRefuse) {
    Add("http://a.example", "2", "v");
    ASSERT_TRUE(DB->SaveDB(NewStamp, DB->Fingerprint()));
    EXPECT_EQ(NewContent(), FileOf({"http://a.example\t2\tv"}));
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

// Domains that differ in a letter's case have one key where the scrambled letter is a letter too. Few domains with many
// paths make lists long, many make chains; long records make the room of removed ones worth giving back.
TEST_F(SnapshotTest, HasTheOrderOfListsInAHashTable) {
    std::mt19937 random(3);
    std::vector<Text> domains;
    const Text base = "evil.example";
    const auto add = [&](size_t index, char letter) {
        const Text encoded = "%" + LowerCase(ToHex(static_cast<std::uint8_t>(letter)));
        domains.push_back(Text(base).replace(index, 1, encoded));
    };
    for (size_t index = 0; index < base.size(); ++index) add(index, UpperCase(base[index]));
    // Of these four one is scrambled to a letter beyond ASCII whose other case another is scrambled to.
    for (const size_t index : {0U, 5U, 10U}) {
        for (const char letter : TextView("\x81\xA1\xC1\xE1")) add(index, letter);
    }
    const size_t odd = domains.size();
    for (int number = 0; number < 300; ++number) domains.push_back("h" + std::to_string(number));
    PlainModel model;
    for (int round = 100; round < 140; ++round) {
        const Text stamp = "202611210" + std::to_string(round);
        Text text = stamp + "\n0";
        for (int line = 0; line < 300; ++line) {
            const bool few = random() % 2 == 0;
            const Text& domain = domains[random() % (few ? odd : domains.size())];
            const Text url = "http://" + domain + "/" + std::to_string(random() % (few ? 60 : 2));
            const Text validated(random() % 4000, 'v');
            const bool adds = random() % 5 < (round % 20 < 10 ? 4 : 0);
            text += Text("\n") + (adds ? "+" : "-") + "\t" + url + "\t2\t" + validated;
            model.Change(adds, url, UrlDecode(domain), "\t2\t" + validated);
        }
        Update(text);
        ASSERT_TRUE(Storage.Contents[File(stamp)] == FileOf(model.Records(), stamp)) << round;
    }
}

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
        EXPECT_EQ(rig.Storage.Contents.size(), stamps.size() - deleted.size());
    }
}

TEST(Prune, LooksAtSnapshotsOnly) {
    ListOfSites rig;
    for (const char* name : {"TBDB2.BIN", "tbdb3.bin", "TBDB.BIN", "TBDB9.BINX", "XTBDB9.BIN", "TBD.BIN"}) {
        rig.Storage.Contents[FakeFiles::Path("Data") / name];
    }
    EXPECT_EQ(rig.DB->MaxFileVersion(), "tbdb3.bin");
    EXPECT_EQ(rig.DB->MinFileVersion(""), "TBDB.BIN");
    EXPECT_EQ(rig.DB->MinFileVersion("TBDB.BIN"), "TBDB2.BIN");
    // It never deletes the one that it spares.
    rig.DB->PruneFiles(0, "200511300600");
    EXPECT_EQ(rig.Snapshots(), "TBD.BIN TBDB2.BIN TBDB9.BINX XTBDB9.BIN");
    EXPECT_EQ(rig.Log.Take().back(), "0 Malicious Database Prune Error: 53 File not found");
    rig.Storage.FailAt(1, ErrorNumber::DeviceIO);
    EXPECT_EQ(rig.DB->MaxFileVersion(), "");
    EXPECT_EQ(rig.Log.Take(), Lines{"0 Malicious Database MaxFileVersion Error: 57 Device I/O error"});
}

}  // namespace
}  // namespace tb
