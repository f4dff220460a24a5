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
    rig.DB->MoveToItem(1);
    const Text mail = rig.DB->GetAttributeValue("ID");
    rig.DB->MoveToItem(2);
    EXPECT_EQ(file, "<SubmitDB Version='1.1' Date='it&apos;s' LastSubmissionID='1'>\r\n  <EMAIL ID='" + mail +
                        "' Status='1' Disposition='1' Date='11/21/2026 08:09:10' UKey='752'> \xE9\t</EMAIL>\r\n"
                        "  <URL ID='" +
                        rig.DB->GetAttributeValue("ID") +
                        "' Status='3' Disposition='4' Date='11/21/2026 08:09:10' UKey='k&apos;1'>http://a/&lt;&amp;"
                        "</URL>\r\n</SubmitDB>\r\n");
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
    rig.DB->MoveToItem(2);
    const Text mail = rig.DB->GetAttributeValue("ID");
    EXPECT_EQ(mail.size(), 16U);
    rig.DB->MoveToItem(1);
    EXPECT_EQ(file, "<SubmitDB Version='1.1' Date='11/01/2026 10:00:00' LastSubmissionID='0'>\r\n <EMAIL ID='" + mail +
                        "' Status='2' Disposition='2' Date='11/02/2026 09:00:00' UKey='1234'>You won</EMAIL>\r\n"
                        " <URL ID='" +
                        rig.DB->GetAttributeValue("ID") +
                        "' Status='1' Disposition='1' Date='11/01/2026 09:00:00' UKey='http://a.example/x'>"
                        "http://a.example/x</URL>\r\n</SubmitDB>\r\n");
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
        Lines held;
        for (std::int32_t index = 1; index <= rig.DB->Count(); ++index) {
            rig.DB->MoveToItem(index);
            held.push_back(rig.DB->Body());
        }
        EXPECT_EQ(held, bodies) << setting;
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
    const Text five = "5 " + ErrorText(5);
    const Text nine = "9 " + ErrorText(9);
    const Text thirteen = "13 " + ErrorText(13);
    const Date now;
    const struct {
        std::function<void()> Do;
        Text Shown;
    } cases[] = {
        {[&] { db.Body(); }, "Error Submissions DB Get Body " + nine},
        {[&] { db.Name(); }, "Error Submissions DB Get Name: " + nine},
        {[&] { db.GetAttributeValue("ID"); }, "Error Submissions GetAttributeValue: " + nine},
        {[&] { db.Delete(1); }, "Error Submissions Delete: " + nine},
        {[&] { db.Add("URL", "b", "12345", 1, now, "k"); }, "Error Submissions Add: " + nine},
        {[&] { db.Add("URL", "b", "12-34-56", 1, now, "k"); }, "Error Submissions Add: " + thirteen},
        {[&] { db.Add("URL", "b", "-5-6", 1, now, "k"); }, "Error Submissions Add: " + thirteen},
        {[&] { db.Add("URL", "b", "1-32768", 1, now, "k"); }, "Error Submissions Add: 6 " + ErrorText(6)},
        {[&] { db.Add("URL", "b", "1-1", 1, now, "k"); }, ""},
        {[&] { db.Add("URL", "b", "1-1", 1, now, "k"); }, "Error Submissions Add: 457 " + ErrorText(457)},
        {[&] { db.UpdateStatus("", "1", "1"); }, "Error Submissions UpdateStatusID: " + five},
        {[&] {
             rig.System.Files.ReadOnly = {"/app/Data/submissions.xml"};
             db.Save(false);
         },
         "Error Submissions Save: 70 " + ErrorText(70)},
        {[&] { db.CalcFingerPrint(Text(8421505, '\xFF')); }, "Error Submissions DB FingerPrint 6 " + ErrorText(6)},
    };
    for (const auto& [act, shown] : cases) {
        act();
        EXPECT_EQ(Join(rig.TakeShown(), "&"), shown.empty() ? "" : Stop + shown);
    }
    EXPECT_EQ(db.Count(), 1);
}

TEST(Store, RunsOutOfNumbers) {
    SubmissionRig rig;
    rig.File("submissions.xml") = "<SubmitDB Version='1.1' LastSubmissionID='32766'/>";
    rig.Start();
    EXPECT_EQ(rig.DB->LastSubmissionID(), 32766);
    const Text saved = rig.File("submissions.xml");
    EXPECT_EQ(rig.DB->LastSubmissionID(), 0);
    EXPECT_EQ(rig.TakeShown(), Lines{Stop + "Error Submissions DB Get Last Submission ID 6 " + ErrorText(6)});
    EXPECT_EQ(rig.File("submissions.xml"), saved);
    rig.DropMail("H\r\n\r\nB");
    EXPECT_EQ(rig.Queue(), "");
    EXPECT_EQ(rig.TakeShown().size(), 1U);
}

TEST(Store, SumsCharacters) {
    SubmissionRig rig;
    const std::pair<Text, std::int32_t> cases[] = {
        {"", 0}, {"A", 65}, {"Hello", 500}, {"olleH", 500}, {"\xE9", 233}, {"Body one", 752}, {"Body one\r\n", 775}};
    for (const auto& [text, sum] : cases) EXPECT_EQ(rig.DB->CalcFingerPrint(text), sum) << text;
    EXPECT_EQ(rig.DB->GetMainURL("a?b?c") + rig.DB->GetMainURL("?") + rig.DB->GetMainURL("d"), "ad");
}

TEST(SubmissionIds, AreEnciphered) {
    const Text key = "TESTKEY!";
    const struct {
        Text Id;
        std::int16_t Offset;
        Text Stored;
    } cases[] = {{"12-3456", 42, "0042YmZmdWkSYHBl"},
                 {"1-100", 0, "0000ZHR+ZHt1aBFk"},
                 {"123-32767", 9999, "9999EGZ2fmR4d24XYw=="},
                 {"1-100", 10000, "10000ZHR+ZHt1aBFk"}};
    for (const auto& [id, offset, stored] : cases) {
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
    SubmissionRig rig;
    rig.System.Random.Value = 0.99999;
    rig.DB->Add("URL", "b", "1-100", 1, {}, "k");
    rig.DB->MoveToItem(1);
    EXPECT_EQ(rig.DB->GetAttributeValue("ID").substr(0, 5), "10000");
    EXPECT_EQ(rig.TakeShown(), Lines());
}

}  // namespace
}  // namespace tb
