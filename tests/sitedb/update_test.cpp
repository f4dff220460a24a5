#include <gtest/gtest.h>

#include "sitedb/ListOfSites.h"

namespace tb {
namespace {

const Text Stamp = "202611210900";

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
    EXPECT_EQ(rig.DB->Count(), 2);
    EXPECT_EQ(rig.Snapshots(), Stamp);
    EXPECT_TRUE(rig.Hits("http://www.b.example/x"));
    // On top of what is held; no line end at the end.
    EXPECT_EQ(rig.Update("202611210901\n0\n-\thttp://b.example/\t\t"),
              (Lines{"1 Received: 0 - TS=" + Stamp, "1 MalDB.Update DelFromDB (http://b.example/  )",
                     "1 MalDB.DelFromDB: domain removed (b.example)", "1 MalDB.PruneFiles: TBDB202611210900.BIN",
                     "1 MalDB.PruneFiles: TBDB202611210901.BIN", "EvilAdded 0 1"}));
    EXPECT_FALSE(rig.Hits("http://b.example"));
    EXPECT_TRUE(rig.Hits("http://evil.example/a"));
    ASSERT_EQ(rig.Web.Requests.size(), 2U);
    EXPECT_EQ(rig.Web.Requests[0].Service + " " + rig.Web.Requests[0].Page, "EVILDBSVR MalDB.aspx");
    EXPECT_EQ(rig.Web.Requests[0].Body, "Key=A%2D1&TS=200001010000");
    EXPECT_EQ(rig.Web.Requests[1].Body, "Key=A%2D1&TS=" + Stamp);
}

TEST(Update, LogsFewChangesOneByOneAndManyNot) {
    for (const auto& [changes, logged] : {std::pair(47, true), {48, true}, {49, false}}) {
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

// What a reply of another kind does to a list as of `Stamp`: its lines, the stamp and the files then.
TEST(Update, TakesNothingFromAReplyThatIsNone) {
    struct Case {
        Text Reply;  // framed unless it begins with "raw:"
        Lines Expected;
        Text StampAfter;
        Text Files;
    };
    const Text since = " - TS=" + Stamp;
    const Text prune = "1 MalDB.PruneFiles: TBDB" + Stamp + ".BIN";
    const Text refused = "0 Malicious Database Save Error: 75 Path/File access error";
    const Text noDate = "0 Malicious Database Prune Error: 13 Type mismatch";
    const auto notSaved = [&](const Text& stamp) {
        return Case{stamp + "\n0\n", {"1 Received: 0" + since, refused, prune, noDate, "EvilAdded 0 0"}, stamp, Stamp};
    };
    const Text next = "202611210901";
    const std::vector<Case> cases{
        {"raw:", {"1 MalDB.Update: No data" + since}, Stamp, Stamp},
        {"raw:hello",
         {"0 Error ChkEncryptString: 5 Invalid procedure call or argument",
          "1 MalDB.Update: Invalid data format" + since},
         Stamp,
         Stamp},
        {"raw:1Gx", {"1 MalDB.Update: Invalid data format" + since}, Stamp, Stamp},
        {next, {"0 Malicious Database Update Error: 9 Subscript out of range"}, Stamp, Stamp},
        {next + "\n", {"1 MalDB.Update: Received update, no data" + since}, Stamp, Stamp},
        {next + "\n\n+\thttp://a.example\t2\tv", {"1 MalDB.Update: Received update, no data" + since}, Stamp, Stamp},
        {next + "\n0",
         {"1 Received: -1" + since, prune, "1 MalDB.PruneFiles: TBDB" + next + ".BIN", "EvilAdded 0 0"},
         next,
         Stamp + " " + next},
        // A carriage return is a character like any other.
        {next + "\r\n\r\n", {"1 Received: 0" + since, refused, prune, "EvilAdded 0 0"}, next + "\r", Stamp},
        {next + "\n1\r\n\r\n",
         {"1 Received: 1" + since, "1 MalDB.Update: incorrect urlEntryParts,\r, count (0)", prune,
          "1 MalDB.PruneFiles: TBDB" + next + ".BIN", "EvilAdded 0 0"},
         next,
         Stamp + " " + next},
        notSaved("../../evil"),
        notSaved("20261121090"),
        notSaved("20261121090a"),
        notSaved(""),
        {next + Text("\0\n0\n", 4),
         {"1 Received: 0" + since, refused, prune, "EvilAdded 0 0"},
         next + Text(1, '\0'),
         Stamp},
        // Twelve digits that are no date name a file all the same.
        {"202613450000\n0\n",
         {"1 Received: 0" + since, prune, "1 MalDB.PruneFiles: TBDB202613450000.BIN", noDate, "EvilAdded 0 0"},
         "202613450000",
         Stamp + " 202613450000"},
    };
    for (const Case& example : cases) {
        SCOPED_TRACE(Quoted(example.Reply));
        ListOfSites rig;
        rig.Update(Stamp + "\n1\n+\thttp://evil.example\t2\tv\n");
        const Text before = rig.Storage.Contents[ListOfSites::File(Stamp)];
        rig.Reply() =
            example.Reply.compare(0, 4, "raw:") == 0 ? example.Reply.substr(4) : EncryptStringChk(example.Reply);
        EXPECT_EQ(rig.UpdateAsItIs(), example.Expected);
        EXPECT_EQ(rig.DB->LastTimestamp(), example.StampAfter);
        EXPECT_EQ(rig.Snapshots(), example.Files);
        EXPECT_EQ(rig.Storage.Contents[ListOfSites::File(Stamp)], before);
        EXPECT_TRUE(rig.Hits("http://evil.example/x"));
    }
}

TEST(Update, EndsQuietlyWithoutAServerAndWithALineWithoutItsMeans) {
    ListOfSites rig;
    rig.Web.Errors["MalDB.aspx"] = "timed out";
    EXPECT_EQ(rig.UpdateAsItIs(), Lines{"1 MalDB.Update: timed out - TS=200001010000"});
    rig.Servers = nullptr;
    EXPECT_EQ(rig.UpdateAsItIs(), Lines{});
    rig.NoServerList = true;
    EXPECT_EQ(rig.UpdateAsItIs(), Lines{"0 Malicious Database Update Error: 5 Invalid procedure call or argument"});
    EXPECT_EQ(rig.Web.Requests.size(), 1U);
    EXPECT_EQ(rig.DB->Timeout(), 3000);
    rig.DB->Timeout(70000);
    EXPECT_EQ(rig.DB->Timeout(), 70000);

    ListOfSites without;
    without.NoSender = true;
    without.Renew();
    EXPECT_EQ(without.UpdateAsItIs(),
              Lines{"0 Malicious Database Update Error: 91 Object variable or With block variable not set"});
    EXPECT_EQ(without.DB->Timeout(), 0);
    EXPECT_EQ(without.Log.Take(),
              Lines{"0 Malicious Database Timeout: 91 Object variable or With block variable not set"});
}

TEST(Update, AnswersChecksWhileItWaitsAndNeverStartsTwice) {
    ListOfSites rig;
    rig.Update(Stamp + "\n1\n+\thttp://old.example\t2\tv\n");
    rig.Web.Meanwhile = [&](const FakeWeb::Request&) {
        EXPECT_TRUE(rig.Hits("http://old.example/x"));
        rig.DB->Update("again");
    };
    rig.Update("202611210901\n1\n+\thttp://new.example\t2\tv\n");
    EXPECT_EQ(rig.Web.Requests.size(), 2U);
    EXPECT_TRUE(rig.Hits("http://new.example"));
    EXPECT_FALSE(rig.Hits("http://old.example"));
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
        rig.Frame("202611210903\n1\n");
        EXPECT_EQ(rig.DB->Update("A-1"), "");
        EXPECT_EQ(rig.Log.Take(), Lines{});
        rig.Web.Meanwhile = nullptr;
        rig.DB->Update("A-1");
        EXPECT_EQ(rig.Log.Take(), Lines{}) << "nor does a later one";
    }
}

TEST(Load, UpdatesUnlessTheNewestSnapshotIsIntact) {
    ListOfSites rig;
    rig.Update(Stamp + "\n1\n+\thttp://first.example\t2\tv\n");
    rig.Update("202611210901\n0\n+\thttp://second.example\t2\tv\n");
    rig.Web.Requests.clear();
    rig.Renew();
    rig.Reply().clear();
    EXPECT_EQ(rig.DB->Load("A-1"), "");
    EXPECT_EQ(rig.Log.Take(), Lines{"0 Malicious Database Load TBDB202611210901.BIN: OK"});
    EXPECT_TRUE(rig.Web.Requests.empty());
    EXPECT_EQ(rig.DB->LastTimestamp(), "202611210901");

    rig.Storage.Contents[ListOfSites::File("202611210901")].back() ^= 1;
    rig.Renew();
    rig.DB->Load("A-1");
    EXPECT_EQ(rig.Log.Take(),
              (Lines{"1 MalDB.RestoreDB: Corrupt file - TBDB202611210901.BIN",
                     "0 Malicious Database Load TBDB202611210900.BIN: OK", "1 MalDB.Update: No data - TS=" + Stamp}));
    EXPECT_EQ(rig.Web.Requests.back().Body, "Key=A%2D1&TS=" + Stamp);
    EXPECT_TRUE(rig.Hits("http://first.example"));
    EXPECT_FALSE(rig.Hits("http://second.example"));

    rig.Storage.Contents.clear();
    rig.Renew();
    rig.DB->Load("A-1");
    EXPECT_EQ(rig.Log.Take(), Lines{"1 MalDB.Update: No data - TS=200001010000"});
}

TEST(Load, AnEmptiedListIsSavedAndLoads) {
    ListOfSites rig;
    rig.Update(Stamp + "\n1\n+\thttp://evil.example\t2\tv\n");
    const Text empty = "0 Malicious Database Fingerprint Error: 9 Subscript out of range";
    EXPECT_EQ(rig.Update("202611210901\n1\n")[2], empty);
    EXPECT_EQ(rig.DB->Count(), 0);
    EXPECT_EQ(rig.Storage.Contents[ListOfSites::File("202611210901")].size(), 26U);
    rig.Renew();
    rig.DB->Load("A-1");
    EXPECT_EQ(rig.Log.Take(), (Lines{empty, "0 Malicious Database Load TBDB202611210901.BIN: OK"}));
    EXPECT_EQ(rig.DB->LiveCount(), 0);
}

TEST(Load, TellsItsProgressInRoundedHundreds) {
    for (const auto& [count, percents] :
         {std::pair(250, "0 40 80 100 "), {800, "0 12 25 38 50 62 75 88 100 "}, {160, "0 62 100 "}, {0, "100 "}}) {
        ListOfSites rig;
        for (int number = 0; number < count; ++number) rig.Add("http://h" + std::to_string(number) + ".example");
        rig.DB->SaveDB(Stamp, rig.DB->Fingerprint());
        EXPECT_TRUE(rig.DB->LoadDB(ListOfSites::File(Stamp), 0));
        EXPECT_EQ(rig.Percents, percents);
        EXPECT_TRUE(rig.DB->LoadDB(ListOfSites::File(Stamp), 1));
        EXPECT_EQ(rig.Percents, percents);
    }
}

}  // namespace
}  // namespace tb
