#include <gtest/gtest.h>

#include "sitedb/ListOfSites.h"

namespace tb {
namespace {

const Text Stamp = "202611210900";
const Text Next = "202611210901";
const Text First = Stamp + "\n1\n+\thttp://first.example\t2\tv\n";

TEST(Update, AsksSinceItsStampAppliesSavesPrunesAndTells) {
    ListOfSites rig;
    EXPECT_EQ(
        rig.Update(Stamp + "\n1\n+\thttp://evil.example/A/\t2\tv\n-\thttp://no.example\t2\tv\n\nthree\tfields\there\n"
                           "+\thttp://evil.example/a\t1\tw\n+\ta\tb\tc\td\n+\thttp://b.example\t2\tx\n"),
        (Lines{"1 MalDB.Update, RemoveAll - TS=200001010000", "1 Received: 7 - TS=200001010000",
               "1 MalDB.Update AddToDB (http://evil.example/A/ 2 v)",
               "1 MalDB.Update DelFromDB (http://no.example 2 v)", "1 MalDB.DelFromDB: no domain (no.example)",
               "1 MalDB.Update: incorrect urlEntryParts,three\tfields\there, count (2)",
               "1 MalDB.Update AddToDB (http://evil.example/a 1 w)",
               "1 MalDB.AddToDB: dup entry - http://evil.example/a (2)",
               "1 MalDB.Update: incorrect urlEntryParts,+\ta\tb\tc\td, count (4)",
               "1 MalDB.Update AddToDB (http://b.example 2 x)", "1 MalDB.PruneFiles: TBDB202611210900.BIN",
               "EvilAdded 3 1"}));
    EXPECT_EQ(rig.Snapshots(), Stamp);
    EXPECT_TRUE(rig.Hits("http://www.b.example/x"));
    // On top of what is held; no line end at the end.
    EXPECT_EQ(rig.Update(Next + "\n0\n-\thttp://b.example/\t\t"),
              (Lines{"1 Received: 0 - TS=" + Stamp, "1 MalDB.Update DelFromDB (http://b.example/  )",
                     "1 MalDB.DelFromDB: domain removed (b.example)", "1 MalDB.PruneFiles: TBDB202611210900.BIN",
                     "1 MalDB.PruneFiles: TBDB202611210901.BIN", "EvilAdded 0 1"}));
    EXPECT_EQ(rig.DB->Count(), 1);
    EXPECT_TRUE(rig.Hits("http://evil.example/a"));
    ASSERT_EQ(rig.Web.Requests.size(), 2U);
    EXPECT_EQ(rig.Web.Requests[0].Service + " " + rig.Web.Requests[0].Page, "EVILDBSVR MalDB.aspx");
    EXPECT_EQ(rig.Web.Requests[0].Body, "Key=A%2D1&TS=200001010000");
    EXPECT_EQ(rig.Web.Requests[1].Body, "Key=A%2D1&TS=" + Stamp);
}

TEST(Update, LogsFewChangesOneByOneAndManyNot) {
    for (const auto& [changes, logged] : {std::pair(48, true), {49, false}}) {
        ListOfSites rig;
        Text text = Stamp + "\n0";
        for (int number = 0; number < changes; ++number)
            text += "\n+\thttp://h" + std::to_string(number) + ".example\t2\tv";
        const Lines lines = rig.Update(text);
        EXPECT_EQ(lines.front(), "1 Received: " + std::to_string(changes - 1) + " - TS=200001010000");
        EXPECT_EQ(lines.size(), logged ? changes + 3U : 3U);
        EXPECT_EQ(lines.back(), "EvilAdded " + std::to_string(changes) + " 0");
    }
}

TEST(Update, TakesNothingFromAReplyThatIsNone) {
    const Text since = " - TS=" + Stamp;
    const std::pair<Text, Lines> cases[] = {
        {"", {"1 MalDB.Update: No data" + since}},
        {"hello",
         {"0 Error ChkEncryptString: 5 Invalid procedure call or argument",
          "1 MalDB.Update: Invalid data format" + since}},
        {EncryptStringChk(Next), {"0 Malicious Database Update Error: 9 Subscript out of range"}},
        {EncryptStringChk(Next + "\n"), {"1 MalDB.Update: Received update, no data" + since}},
        {EncryptStringChk(Next + "\n\n+\thttp://a.example\t2\tv"),
         {"1 MalDB.Update: Received update, no data" + since}},
    };
    ListOfSites rig;
    rig.Update(First);
    const auto files = rig.Storage.Contents;
    for (const auto& [reply, lines] : cases) {
        rig.Reply() = reply;
        EXPECT_EQ(rig.UpdateAsItIs(), lines) << Quoted(reply);
        EXPECT_EQ(rig.DB->LastTimestamp(), Stamp);
        EXPECT_EQ(rig.Storage.Contents, files);
    }
    EXPECT_TRUE(rig.Hits("http://first.example/x"));
}

TEST(Update, AStampThatNamesNoFileIsTakenButNotSaved) {
    ListOfSites rig;
    rig.Update(First);
    const auto files = rig.Storage.Contents;
    for (const Text& stamp :
         {Text("../../evil"), Text("20261121090"), Text("20261121090a"), Text(), Next + "\r", Next + Text(1, '\0')}) {
        const Lines lines = rig.Update(stamp + "\n0\n");
        EXPECT_EQ(lines.at(1), "0 Malicious Database Save Error: 75 Path/File access error") << Quoted(stamp);
        EXPECT_EQ(lines.back(), "EvilAdded 0 0");
        EXPECT_EQ(rig.DB->LastTimestamp(), stamp);
        EXPECT_EQ(rig.Storage.Contents, files);
    }
    EXPECT_EQ(rig.Update(Next + "\n1\r\n\r\n")[1], "1 MalDB.Update: incorrect urlEntryParts,\r, count (0)")
        << "a carriage return is a character like any other";
    // Twelve digits that are no date name a file all the same.
    EXPECT_EQ(rig.Update("202613450000\n0\n"),
              (Lines{"1 Received: 0 - TS=" + Next, "1 MalDB.PruneFiles: TBDB" + Stamp + ".BIN",
                     "1 MalDB.PruneFiles: TBDB" + Next + ".BIN", "1 MalDB.PruneFiles: TBDB202613450000.BIN",
                     "0 Malicious Database Prune Error: 13 Type mismatch", "EvilAdded 0 0"}));
    EXPECT_TRUE(rig.Hits("http://first.example/x"));
}

TEST(Update, EndsQuietlyWithoutAServerAndWithALineWithoutItsMeans) {
    ListOfSites rig;
    const Text noSender = "91 Object variable or With block variable not set";
    rig.NoSender = true;
    rig.Renew();
    EXPECT_EQ(rig.UpdateAsItIs(), Lines{"0 Malicious Database Update Error: " + noSender});
    rig.NoSender = false;
    rig.Renew();
    EXPECT_EQ(rig.DB->Timeout(), 3000);
    rig.Web.Errors["MalDB.aspx"] = "timed out";
    EXPECT_EQ(rig.UpdateAsItIs(), Lines{"1 MalDB.Update: timed out - TS=200001010000"});
    rig.Servers = nullptr;
    EXPECT_EQ(rig.UpdateAsItIs(), Lines{});
    rig.NoServerList = true;
    EXPECT_EQ(rig.UpdateAsItIs(), Lines{"0 Malicious Database Update Error: 5 Invalid procedure call or argument"});
    EXPECT_EQ(rig.Web.Requests.size(), 1U);
}

TEST(Update, AnswersChecksWhileItWaitsAndNeverStartsTwice) {
    ListOfSites rig;
    rig.Update(First);
    rig.Web.Meanwhile = [&](const FakeWeb::Request&) {
        EXPECT_TRUE(rig.Hits("http://first.example/x"));
        rig.DB->Update("again");
    };
    rig.Update(Next + "\n1\n+\thttp://new.example\t2\tv\n");
    EXPECT_EQ(rig.Web.Requests.size(), 2U);
    EXPECT_TRUE(rig.Hits("http://new.example"));
    EXPECT_FALSE(rig.Hits("http://first.example"));
    // A failure inside the wait does not bar the next update.
    rig.Web.Meanwhile = [&](const FakeWeb::Request&) { throw RuntimeError(1, "x"); };
    EXPECT_EQ(rig.UpdateAsItIs(), Lines{"0 Malicious Database Update Error: 1 x"});
    rig.Web.Meanwhile = nullptr;
    EXPECT_EQ(rig.Update("202611210902\n0").back(), "EvilAdded 0 0");
    // The program ends while a server is slow: with an answer, and without one.
    for (const bool fails : {false, true}) {
        rig.Renew();
        rig.Web.Meanwhile = [&](const FakeWeb::Request&) {
            rig.DB->Close();
            if (fails) throw RuntimeError(1, "x");
        };
        EXPECT_EQ(rig.Update("202611210903\n1\n"), Lines{});
        rig.Web.Meanwhile = nullptr;
        EXPECT_EQ(rig.UpdateAsItIs(), Lines{}) << "nor does a later one";
    }
}

// A disk that is full from some call of an update on, for good or for that call only: the files and the list are the
// old or the new ones, never a mix.
TEST(Update, AFullDiskLeavesWholeFilesAndTheListGoesOn) {
    for (const bool forGood : {false, true}) {
        int walked = 0;
        for (bool failed = true; failed; ++walked) {
            ListOfSites rig;
            const auto isNew = [&] { return rig.Hits("http://new.example") && !rig.Hits("http://first.example"); };
            // Six, so that pruning deletes one.
            for (int hour = 0; hour < 5; ++hour) rig.Update("202611210" + std::to_string(hour) + "00\n0\n");
            rig.Update(First);
            const auto files = rig.Storage.Contents;
            rig.Storage.FailAt(walked + 1, ErrorNumber::DiskFull, forGood);
            const Lines lines = rig.Update(Next + "\n0\n-\thttp://first.example\t\t\n+\thttp://new.example\t2\tG\n");
            rig.Storage.FailNoMore();
            failed = std::any_of(lines.begin(), lines.end(), [](const Text& line) { return line[0] == '0'; });
            EXPECT_EQ(lines.back(), "EvilAdded 1 1");
            EXPECT_EQ(rig.DB->LastTimestamp(), Next);
            EXPECT_TRUE(isNew());
            const bool saved = rig.Storage.Exists(ListOfSites::File(Next));
            EXPECT_GE(rig.Storage.Contents.size(), files.size() - (saved ? 0 : 1)) << walked;
            for (const auto& [path, content] : files) {
                EXPECT_TRUE(!rig.Storage.Exists(path) || rig.Storage.Contents[path] == content);
            }
            rig.Renew();
            bool corrupt = false;
            EXPECT_TRUE(rig.DB->RestoreDB(corrupt) && !corrupt);
            EXPECT_EQ(saved, isNew()) << walked;
        }
        // Opening, writing, finishing, replacing; listing; listing, clearing and deleting; and once without a failure.
        EXPECT_EQ(walked, 9);
    }
}

TEST(Load, UpdatesUnlessTheNewestSnapshotIsIntact) {
    ListOfSites rig;
    rig.Update(First);
    rig.Update(Next + "\n0\n+\thttp://second.example\t2\tv\n");
    rig.Reply().clear();
    const auto load = [&] {
        rig.Renew();
        EXPECT_EQ(rig.DB->Load("A-1"), "");
        return rig.Log.Take();
    };
    EXPECT_EQ(load(), Lines{"0 Malicious Database Load TBDB202611210901.BIN: OK"});
    EXPECT_EQ(rig.Web.Requests.size(), 2U);
    rig.Storage.Contents[ListOfSites::File(Next)].back() ^= 1;
    EXPECT_EQ(load(),
              (Lines{"1 MalDB.RestoreDB: Corrupt file - TBDB202611210901.BIN",
                     "0 Malicious Database Load TBDB202611210900.BIN: OK", "1 MalDB.Update: No data - TS=" + Stamp}));
    EXPECT_EQ(rig.Web.Requests.back().Body, "Key=A%2D1&TS=" + Stamp);
    EXPECT_FALSE(rig.Hits("http://second.example"));
    rig.Storage.Contents.clear();
    EXPECT_EQ(load(), Lines{"1 MalDB.Update: No data - TS=200001010000"});

    // An emptied list is saved, and loads.
    const Text empty = "0 Malicious Database Fingerprint Error: 9 Subscript out of range";
    EXPECT_EQ(rig.Update(Next + "\n1\n")[2], empty);
    EXPECT_EQ(rig.Storage.Contents[ListOfSites::File(Next)].size(), 26U);
    EXPECT_EQ(load(), (Lines{empty, "0 Malicious Database Load TBDB202611210901.BIN: OK"}));
    EXPECT_EQ(rig.DB->LiveCount(), 0);
}

TEST(Load, TellsItsProgressInRoundedHundreds) {
    ListOfSites rig;
    for (int number = 0; number < 800; ++number) rig.Add("http://h" + std::to_string(number) + ".example");
    rig.DB->SaveDB(Stamp, 0);
    rig.DB->LoadDB(ListOfSites::File(Stamp), 0);
    rig.DB->LoadDB(ListOfSites::File(Stamp), 1);
    EXPECT_EQ(rig.Percents, "0 12 25 38 50 62 75 88 100 ");
}

}  // namespace
}  // namespace tb
