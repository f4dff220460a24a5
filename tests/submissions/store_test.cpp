#include <gtest/gtest.h>

#include "fakes/Raised.h"
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
    rig.DB->Add("URL", "http://a/<&", "1-100", 1, rig.System.Clock.Now(), "k'1");
    rig.System.Random.Value = 0.5;
    rig.DB->Add("EMAIL", " \xE9\t", "1--5", 1, rig.System.Clock.Now(), "752");
    rig.DB->LastUpdateDate("it's");
    rig.DB->MoveToItem(2);
    rig.DB->UpdateStatus(rig.DB->GetAttributeValue("id"), "3", "4");
    rig.DB->Save(false);
    EXPECT_NE(
        file.find("' Status='3' Disposition='4' Date='11/21/2026 08:09:10' UKey='k&apos;1'>http://a/&lt;&amp;</URL>"),
        Text::npos);
    rig.Start();
    EXPECT_EQ(rig.Stored(), (Lines{"EMAIL|01--000005| \xE9\t|752", "URL|01-000100|http://a/<&|k'1"}));
    EXPECT_EQ(rig.DB->LastUpdateDate(), "it's");
    EXPECT_TRUE(rig.DB->Exists("http://a/<&"));
    EXPECT_FALSE(rig.DB->Exists("HTTP://a/<&"));
    EXPECT_TRUE(rig.DB->UniqueKeyExists("k'1"));
    rig.DB->Delete(2);
    rig.DB->Delete(1);
    rig.DB->Add("EMAIL", "the same stored identifier", "1--5", 1, {}, "");
    EXPECT_FALSE(rig.DB->Exists("http://a/<&"));
    EXPECT_FALSE(rig.DB->UniqueKeyExists("k'1"));
    EXPECT_EQ(rig.TakeShown(), Lines());
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
    const Text mismatch = Stop + "Error Submissions Setup: 13 " + ErrorText(13);
    const struct {
        Text Setting, Dates[2], Bodies, Told;
    } cases[] = {
        {"Never", {"01/01/1999 00:00:00", "11/20/2026"}, "b0 b1", ""},
        {"60 Days", {"09/22/2026", "09/22/2026 00:00:01"}, "b1", "0 Prune Submission: i0 1 1 09/22/2026 k b0"},
        {"60Days", {"11/20/2026", "11/20/2026"}, "", mismatch},
        {"Never", {"11/20/2026", "soon"}, "b0", mismatch},
    };
    for (const auto& [setting, dates, bodies, told] : cases) {
        SubmissionRig rig;
        rig.System.Clock.Present = Date(CivilDate{2026, 11, 21});
        rig.Set("AutoTrimSubDays", setting);
        const Text content = StoreText(Entry("i0", dates[0], "b0") + Entry("i1", dates[1], "b1"));
        rig.File("submissions.xml") = content;
        rig.Start();
        EXPECT_EQ(Join(rig.Each([&] { return rig.DB->Body(); }), " "), bodies) << setting;
        EXPECT_EQ(Join(rig.TakeShown(), "&") + Join(rig.Log.Take(), "&"), told);
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
    const auto told = [&](const Text& what, int number) {
        EXPECT_EQ(rig.TakeShown(),
                  Lines{Stop + "Error Submissions " + what + std::to_string(number) + " " + ErrorText(number)});
    };
    for (int time = 0; time < 2; ++time) rig.DB->Add("URL", "b", "1-1", 1, {}, "k");
    told("Add: ", 457);
    rig.DB->CalcFingerPrint(Text(8421505, '\xFF'));
    told("DB FingerPrint ", 6);
    rig.File("submissions.xml") = "<SubmitDB Version='1.1' LastSubmissionID='32767'/>";
    rig.Start();
    rig.DropMail("H\r\n\r\nB");
    EXPECT_EQ(rig.Queue(), "");
    told("DB Get Last Submission ID ", 6);
    rig.System.Files.ReadOnly = {"/app/Data/submissions.xml"};
    rig.DB->Save(false);
    told("Save: ", 70);
}

TEST(SubmissionIds, AreEnciphered) {
    const Text key = "TESTKEY!";
    const std::tuple<Text, std::int16_t, Text> cases[] = {{"12-3456", 42, "0042YmZmdWkSYHBl"},
                                                          {"1-100", 0, "0000ZHR+ZHt1aBFk"},
                                                          {"123-32767", 9999, "9999EGZ2fmR4d24XYw=="}};
    for (const auto& [id, offset, stored] : cases) {
        EXPECT_EQ(EncipheredSubID(id, offset, key), stored);
        EXPECT_EQ(DecipheredSubID(stored, key), NormalisedSubID(id));
    }
    EXPECT_EQ(EncipheredSubID("1-100", 10000, key), "10000ZHR+ZHt1aBFk") << "a digit more than is read back";
    const std::pair<Text, int> damaged[] = {
        {"1234ABCDE", 0}, {"0000====", 0}, {"1234", 9}, {"-123ABCD", 9}, {"abcdABCD", 13}};
    for (const auto& [text, number] : damaged) {
        EXPECT_EQ(Raised([&, stored = text] { DecipheredSubID(stored, key); }), number) << text;
    }
    EXPECT_EQ(Raised([] { NormalisedSubID("12345"); }), 9);
    EXPECT_EQ(Raised([] { NormalisedSubID("1-32768"); }), 6);
}

}  // namespace
}  // namespace tb
