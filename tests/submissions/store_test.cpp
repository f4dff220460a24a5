// The list and the queue, and what stays of a submission whatever fails at any moment.
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

// The last one first.
struct BackwardFiles : FakeFiles {
    std::vector<Path> List(const Path& folder) override {
        std::vector<Path> names = FakeFiles::List(folder);
        std::reverse(names.begin(), names.end());
        return names;
    }
};

TEST(Queue, ListsInOrderAndClearsOnlyItsLeftovers) {
    BackwardFiles files;
    files.Folders = {"/Data"};
    SubmissionQueue queue(files, "/Data");
    EXPECT_TRUE(queue.IsEmpty()) << "without a folder";
    queue.MakeFolders();
    for (const char* name : {"2.E", "1.U", "other"}) queue.Add(name, name);
    queue.SetAside("2.E");
    EXPECT_EQ(queue.List(), (std::vector<std::filesystem::path>{"1.U", "other"}));
    const std::set<std::filesystem::path> kept{"/Data/a.X.tmp~", "/Data/b.E", "/Data/InProcess/1.U",
                                               "/Data/InProcess/other", "/Data/InProcess/Error/2.E"};
    for (const char* name : {"a.X.tmp~", "b.E", "3.e.tmp~", "4.U.TMP~"}) files.Contents[Text("/Data/") + name];
    queue.ClearLeftovers();
    std::set<std::filesystem::path> left;
    for (const auto& [path, content] : files.Contents) left.insert(path);
    EXPECT_EQ(left, kept);
}

const Text Mail = "Subject: s\r\n\r\nBody one";
const Text MailKey = "752";
const Text EmailPage = "SubmitEmail.aspx";

// Whether the submission waits in the queue, whole, or stands in the list on the disk.
bool IsKept(SubmissionRig& rig) {
    for (const auto& [path, content] : rig.System.Files.Contents) {
        const auto folder = path.parent_path();
        const bool waits = folder == rig.DB->Queue().Folder() || folder == rig.DB->Queue().ErrorFolder();
        if (waits && content == " 2 , 3 , 752 \r\nSubject: s\r\n\r\nBody one\r\n") return true;
        if (waits) ADD_FAILURE() << path << " holds " << content;
    }
    return rig.File("submissions.xml").find("UKey='" + MailKey + "'") != Text::npos;
}

// Everything that a kill, or a failure that passes, can hit, one call after the other. `act` starts with one mail in
// the queue.
void Walk(const std::function<void(SubmissionRig&)>& act) {
    for (const bool killed : {true, false}) {
        for (int call = 1;; ++call) {
            SubmissionRig rig;
            rig.DropMail(Mail);
            const int before = rig.System.Files.Calls();
            rig.System.Files.FailAt(call, ErrorNumber::DeviceIO, killed);
            act(rig);
            const bool reached = rig.System.Files.Calls() - before >= call;
            rig.System.Files.FailNoMore();
            EXPECT_TRUE(IsKept(rig)) << "call " << call << (killed ? ", then killed" : "");
            // The next start goes on from there, and ends with the submission in the list and nowhere else.
            rig.Start();
            rig.Web.Replies[EmailPage] = "1-2 thanks";
            rig.DB->ProcessSubmissions();
            rig.Start();
            EXPECT_TRUE(IsKept(rig)) << "call " << call;
            EXPECT_EQ(rig.Queue().find("0.E"), rig.Queue().find("!0.E") == Text::npos ? Text::npos : 1) << call;
            if (!reached) break;
            ASSERT_LT(call, 200);
        }
    }
}

TEST(Walk, AcceptanceAndFailuresKeepTheSubmission) {
    Walk([](SubmissionRig& rig) {
        rig.Web.Replies[EmailPage] = "1-1 thanks";
        rig.DB->ProcessSubmissions();
        rig.DB->ProcessSubmissions();
    });
    Walk([](SubmissionRig& rig) {
        rig.Web.Scripts[EmailPage].assign(6, {"t/o", ""});
        for (int time = 0; time < 6; ++time) rig.DB->ProcessSubmissions();
        rig.Web.Scripts.clear();
    });
}

// A full or read-only folder, and a kill: either the file is whole in the queue, or the user was told. The next start
// clears what is unfinished.
TEST(Walk, ADropIsQueuedWholeOrTold) {
    for (const bool killed : {true, false}) {
        for (int call = 1, reached = 1; reached != 0; ++call) {
            SubmissionRig rig;
            const int before = rig.System.Files.Calls();
            rig.System.Files.FailAt(call, ErrorNumber::DiskFull, killed);
            rig.DropMail(Mail);
            reached = rig.System.Files.Calls() - before >= call;
            EXPECT_EQ(rig.TakeShown().empty(), reached == 0) << call;
            rig.System.Files.FailNoMore();
            EXPECT_TRUE(rig.Queue().empty() ? reached != 0 : rig.Queue() == "0.E" && IsKept(rig)) << call;
            rig.Start();
            for (const auto& [path, content] : rig.System.Files.Contents) EXPECT_NE(path.extension(), ".tmp~") << path;
            ASSERT_LT(call, 50);
        }
    }
}

}  // namespace
}  // namespace tb
