#include <gtest/gtest.h>

#include "fakes/Raised.h"
#include "sitedb/codec/Base64.h"
#include "sitedb/codec/Encryption.h"
#include "submissions/SubmissionIds.h"
#include "submissions/SubmissionRig.h"

namespace tb {
namespace {

const Text Stop = "16|Trawlbeam|";

Text Entry(const Text& id, const Text& date, const Text& body) {
    return "<URL ID='" + id + "' Status='1' Disposition='1' Date='" + date + "' UKey='k'>" + body + "</URL>";
}
Text StoreText(const Text& entries) {
    return "<SubmitDB Version='1.1' Date='d' LastSubmissionID='7'>" + entries + "</SubmitDB>";
}

TEST(Store, IsMadeWrittenAndReadBack) {
    SubmissionRig rig;
    const Text& file = rig.File("submissions.xml");
    EXPECT_EQ(file, "<SubmitDB Version='1.1' Date='11/21/2026 08:09:10' LastSubmissionID='0'>\r\n</SubmitDB>\r\n");
    EXPECT_EQ(rig.DB->LastSubmissionID(), 0);
    rig.DB->Add("URL", "http://a/<&", "1-100", 1, rig.System.Clock.Now(), "k'1");
    rig.System.Random.Value = 0.5;
    rig.DB->Add("EMAIL", " \xE9\t", "1--5", 1, rig.System.Clock.Now(), "752");
    EXPECT_EQ(file.find("EMAIL"), Text::npos);
    rig.DB->LastUpdateDate("it's");
    rig.DB->UpdateStatus("no such id", "2", "2");
    rig.DB->MoveToItem(2);
    rig.DB->UpdateStatus(rig.DB->GetAttributeValue("id"), "3", "4");
    rig.DB->Save(false);
    EXPECT_NE(
        file.find("' Status='3' Disposition='4' Date='11/21/2026 08:09:10' UKey='k&apos;1'>http://a/&lt;&amp;</URL>"),
        Text::npos);
    const Lines held{"EMAIL|01--000005| \xE9\t|752", "URL|01-000100|http://a/<&|k'1"};
    EXPECT_EQ(rig.Stored(), held);
    const Text before = file;
    rig.Start();
    EXPECT_EQ(rig.Stored(), held);
    EXPECT_EQ(file, before);
    EXPECT_EQ(rig.DB->LastUpdateDate(), "it's");
    EXPECT_TRUE(rig.DB->Exists("http://a/<&"));
    EXPECT_FALSE(rig.DB->Exists("HTTP://a/<&"));
    EXPECT_TRUE(rig.DB->UniqueKeyExists("k'1"));
    rig.DB->Delete(2);
    rig.DB->Delete(1);
    rig.DB->Add("EMAIL", "the same stored identifier", "1--5", 1, {}, "");
    EXPECT_FALSE(rig.DB->Exists("http://a/<&"));
    EXPECT_FALSE(rig.DB->UniqueKeyExists("k'1"));
    EXPECT_EQ(rig.TakeShown(), Lines{Stop + "Error Submissions UpdateStatusID: 5 " + ErrorText(5)});
}

TEST(Store, UpgradesTheOlderFormat) {
    SubmissionRig rig;
    Text& file = rig.File("submissions.xml");
    file =
        "<SubmitDB Date='11/01/2026 10:00:00'><HTML ID='1-100' Status='1' Disposition='1' "
        "Date='11/01/2026 09:00:00' UKey='http://a.example/x'>http://a.example/x</HTML><EMAIL ID='1-101' Status='2' "
        "Disposition='2' Date='11/02/2026 09:00:00' UKey='1234'>You won</EMAIL></SubmitDB>";
    rig.Start();
    EXPECT_EQ(rig.Stored(),
              (Lines{"URL|01-000100|http://a.example/x|http://a.example/x", "EMAIL|01-000101|You won|1234"}));
    EXPECT_EQ(file.rfind("<SubmitDB Version='1.1' Date='11/01/2026 10:00:00' LastSubmissionID='0'>\r\n <EMAIL ID='", 0),
              0U);
    EXPECT_EQ(file.find("ID='1-1"), Text::npos) << "identifiers are enciphered";
}

// What of two entries is there after a start.
TEST(Store, Prunes) {
    const struct {
        Text Setting;
        Text Dates[2];
        Lines Bodies;
        Text Shown;
        Text FirstLine;
    } cases[] = {
        {"Never", {"01/01/1999 00:00:00", "11/20/2026"}, {"b0", "b1"}, "", ""},
        {"60 Days",
         {"09/22/2026 00:00:00", "09/22/2026 00:00:01"},
         {"b1"},
         "",
         "0 Prune Submission: i0 1 1 09/22/2026 00:00:00 k b0"},
        {"60Days", {"11/20/2026", "11/20/2026"}, {}, Stop + "Error Submissions Setup: 13 " + ErrorText(13), ""},
        {"Never", {"11/20/2026", "soon"}, {"b0"}, Stop + "Error Submissions Setup: 13 " + ErrorText(13), ""},
    };
    for (const auto& [setting, dates, bodies, shown, firstLine] : cases) {
        SubmissionRig rig;
        rig.Log.Take();
        rig.System.Clock.Present = Date(CivilDate{2026, 11, 21});
        rig.Set("AutoTrimSubDays", setting);
        const Text content = StoreText(Entry("i0", dates[0], "b0") + Entry("i1", dates[1], "b1"));
        rig.File("submissions.xml") = content;
        rig.Start();
        EXPECT_EQ(rig.Each([&] { return rig.DB->Body(); }), bodies) << setting;
        EXPECT_EQ(Join(rig.TakeShown(), "&"), shown);
        EXPECT_EQ(Join(rig.Log.Take(), "&"), firstLine);
        EXPECT_EQ(rig.File("submissions.xml"), content);
    }
}

TEST(Store, KeepsAFileThatItCouldNotRead) {
    SubmissionRig rig;
    rig.File("submissions.xml") = "<SubmitDB Version='1.1'";
    rig.Start();
    EXPECT_EQ(rig.TakeShown().size(), 1U);
    EXPECT_EQ(rig.DB->LastSubmissionID(), 0);
    EXPECT_EQ(rig.File("submissions.xml"), "<SubmitDB Version='' Date='' LastSubmissionID='1'>\r\n</SubmitDB>\r\n");
    rig.DB->Save(false);
    EXPECT_EQ(rig.File("submissions.xml.bad"), "<SubmitDB Version='1.1'");
}

TEST(Store, TellsItsFailures) {
    SubmissionRig rig;
    SubmissionDB& db = *rig.DB;
    const auto add = [&](const Text& id) {
        db.Add("URL", "b", id, 1, {}, "k");
        return rig.TakeShown();
    };
    for (const auto& [id, number] : std::vector<std::pair<Text, int>>{{"12345", 9}, {"12-34-56", 13}, {"1-32768", 6}}) {
        EXPECT_EQ(add(id), Lines{Stop + "Error Submissions Add: " + std::to_string(number) + " " + ErrorText(number)});
    }
    EXPECT_EQ(add("1-1"), Lines());
    EXPECT_EQ(add("1-1").size(), 1U) << "it is there";
    rig.System.Files.ReadOnly = {"/app/Data/submissions.xml"};
    db.Save(false);
    EXPECT_EQ(rig.TakeShown(), Lines{Stop + "Error Submissions Save: 70 " + ErrorText(70)});
    db.CalcFingerPrint(Text(8421505, '\xFF'));
    EXPECT_EQ(rig.TakeShown(), Lines{Stop + "Error Submissions DB FingerPrint 6 " + ErrorText(6)});
    EXPECT_EQ(db.Count(), 1);
}

TEST(Store, RunsOutOfNumbers) {
    SubmissionRig rig;
    rig.File("submissions.xml") = "<SubmitDB Version='1.1' LastSubmissionID='32766'/>";
    rig.Start();
    EXPECT_EQ(rig.DB->LastSubmissionID(), 32766);
    rig.DropMail("H\r\n\r\nB");
    EXPECT_EQ(rig.Queue(), "");
    EXPECT_EQ(rig.TakeShown(), Lines{Stop + "Error Submissions DB Get Last Submission ID 6 " + ErrorText(6)});
}

TEST(SubmissionIds, AreEnciphered) {
    const Text key = "TESTKEY!";
    for (const auto& [id, offset, stored] :
         std::vector<std::tuple<Text, std::int16_t, Text>>{{"12-3456", 42, "0042YmZmdWkSYHBl"},
                                                           {"1-100", 0, "0000ZHR+ZHt1aBFk"},
                                                           {"123-32767", 9999, "9999EGZ2fmR4d24XYw=="},
                                                           {"1-100", 10000, "10000ZHR+ZHt1aBFk"}}) {
        EXPECT_EQ(EncipheredSubID(id, offset, key), stored);
        EXPECT_TRUE(offset == 10000 || DecipheredSubID(stored, key) == NormalisedSubID(id)) << id;
    }
    EXPECT_EQ(NormalisedSubID("5--7"), "05--000007");
}

TEST(SubmissionIds, OfNoMeaningAreRead) {
    const Text key = "TESTKEY!";
    for (const Text stored : {"10000ZHR+ZHt1aBFk", "1234ABCDE", "0000===="}) {
        EXPECT_EQ(Raised([&] { DecipheredSubID(stored, key); }), 0) << stored;
    }
    EXPECT_EQ(Raised([&] { DecipheredSubID("1234", key); }), 9);
    EXPECT_EQ(Raised([&] { DecipheredSubID("-123ABCD", key); }), 9);
    EXPECT_EQ(Raised([&] { DecipheredSubID("abcdABCD", key); }), 13);
}

}  // namespace
}  // namespace tb
