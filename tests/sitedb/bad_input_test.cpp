// What comes from the disk, damaged in every way that can be walked, and a disk that fails at every step: the list and
// the files are the old or the new ones, never a mix.
#include <gtest/gtest.h>

#include "sitedb/ListOfSites.h"

namespace tb {
namespace {

const Text OldStamp = "202611200900";
const Text NewStamp = "202611210900";
const Text OldUpdate = OldStamp + "\n1\n+\thttp://old.example\t2\tv\n";
const Text NewUpdate = NewStamp + "\n0\n-\thttp://old.example\t\t\n+\thttp://new.example\t2\tG\n";

// Every way to cut a text short, then every single bit turned.
std::vector<Text> Damaged(const Text& whole) {
    std::vector<Text> all;
    for (size_t length = 0; length < whole.size(); ++length) all.push_back(whole.substr(0, length));
    for (size_t bit = 0; bit < whole.size() * 8; ++bit) {
        all.push_back(whole);
        all.back()[bit / 8] = static_cast<char>(all.back()[bit / 8] ^ 1 << bit % 8);
    }
    return all;
}

// "old" or "new" as a check sees it.
Text Held(ListOfSites& rig) {
    return Text(rig.Hits("http://old.example") ? "old" : "") + (rig.Hits("http://new.example") ? "new" : "");
}

TEST(BadInput, ADamagedSnapshotIsNeverTaken) {
    ListOfSites rig;
    rig.Update(OldUpdate);
    rig.Update(NewUpdate);
    const auto files = rig.Storage.Contents;
    const Text whole = files.at(ListOfSites::File(NewStamp));
    int putRight = 0;
    for (const Text& content : Damaged(whole)) {
        rig.Storage.Contents = files;
        rig.Storage.Contents[ListOfSites::File(NewStamp)] = content;
        rig.Renew();
        rig.Log.Take();
        bool corrupt = false;
        const bool loaded = rig.DB->RestoreDB(corrupt);
        const Lines lines = rig.Log.Take();
        EXPECT_EQ(rig.Storage.Contents.at(ListOfSites::File(OldStamp)), files.at(ListOfSites::File(OldStamp)));
        if (loaded && !corrupt) {
            // A letter of the URL in its other case is put right by adding it: it is the undamaged list.
            rig.DB->SaveDB(NewStamp, rig.DB->Fingerprint());
            EXPECT_EQ(rig.Storage.Contents, files);
            ++putRight;
        } else if (loaded) {
            EXPECT_EQ(rig.Snapshots(), OldStamp);
            EXPECT_EQ(rig.DB->LastTimestamp(), OldStamp);
            EXPECT_EQ(Held(rig), "old");
        } else {
            EXPECT_EQ(rig.Storage.Contents.at(ListOfSites::File(NewStamp)), content);
            EXPECT_EQ(lines.back(), "0 Malicious Database Restore Error: 70 Permission denied");
        }
    }
    EXPECT_EQ(putRight, static_cast<int>(Text("httpnewexample").size()));
}

// A disk that is full from some call of an update on, for good or for that call only.
TEST(BadInput, AFullDiskLeavesWholeFilesAndTheListGoesOn) {
    for (const bool forGood : {false, true}) {
        int walked = 0;
        for (bool failed = true; failed; ++walked) {
            ListOfSites rig;
            // Six, so that pruning deletes one.
            for (int hour = 0; hour < 5; ++hour) rig.Update(NewStamp.substr(0, 9) + std::to_string(hour) + "00\n0\n");
            rig.Update(OldUpdate);
            const auto files = rig.Storage.Contents;
            const int before = rig.Storage.Calls();
            rig.Storage.FailAt(walked + 1, ErrorNumber::DiskFull, forGood);
            const Lines lines = rig.Update(NewUpdate);
            failed = rig.Storage.Calls() - before > walked;
            rig.Storage.FailNoMore();
            const auto isFailure = [](const Text& line) { return line[0] == '0'; };
            EXPECT_EQ(std::any_of(lines.begin(), lines.end(), isFailure), failed) << walked;
            EXPECT_EQ(lines.back(), "EvilAdded 1 1");
            EXPECT_EQ(rig.DB->LastTimestamp(), NewStamp);
            EXPECT_EQ(Held(rig), "new");
            size_t kept = 0;
            for (const auto& [path, content] : files) kept += rig.Storage.Contents.count(path);
            EXPECT_GE(kept, files.size() - 1) << walked;
            for (const auto& [path, content] : rig.Storage.Contents) {
                EXPECT_TRUE(files.count(path) == 0 || files.at(path) == content);
            }
            const bool saved = rig.Storage.Exists(ListOfSites::File(NewStamp));
            rig.Renew();
            rig.Log.Take();
            bool corrupt = true;
            EXPECT_TRUE(rig.DB->RestoreDB(corrupt));
            EXPECT_FALSE(corrupt);
            EXPECT_EQ(saved, Held(rig) == "new") << walked;
        }
        // Opening, writing, finishing, replacing; listing; listing, clearing and deleting; and once without a failure.
        EXPECT_EQ(walked, 9);
    }
}

}  // namespace
}  // namespace tb
