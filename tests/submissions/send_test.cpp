#include <gtest/gtest.h>

#include "submissions/SubmissionRig.h"

namespace tb {
namespace {

const Text EmailPage = "SubmitEmail.aspx";
const Text UrlPage = "SubmitURL.aspx";
const Text Mail =
    " 2 , 3 , 3202 \r\nFrom: Bad Guy <bad@evil.example>\r\nSubject: Win 100% now\r\n\r\nClick here\r\n"
    "http://evil.example/a?b=1\r\n";
const Text Link = " 2 , 4 ,http://evil.example/a,b\r\nhttp://evil.example/a,b?x=1&y=2";

struct SendRig : SubmissionRig {
    SendRig() { Log.Take(); }
    void Queue(const Text& name, const Text& content) { File("InProcess/" + name) = content; }
    Text Names() const { return SubmissionRig::Queue(); }
    // What a run logs.
    Lines Run() {
        Log.Take();
        DB->ProcessSubmissions();
        return Log.Take();
    }
    void Script(const Text& page, const Text& error, const Text& reply) {
        Web.Scripts[page].emplace_back(error, reply);
    }
};

TEST(Send, PostsMailsAndURLs) {
    SendRig rig;
    rig.Queue("0.e", Mail);
    rig.Queue("1.U", Link);
    rig.Queue("2.X", "stays");
    rig.Queue("3.U", " 2 , 4 ,http://0x7f.1/\r\nhttp://0x7f.1//?q");
    rig.Web.Replies = {{EmailPage, "12-345 thanks"}, {UrlPage, "12-346"}};
    rig.Web.Meanwhile = [&](const FakeWeb::Request&) {
        // Each has another identifier.
        rig.System.Random.Value += 0.001;
    };
    EXPECT_EQ(rig.Run().size(), 11U);
    ASSERT_EQ(rig.Web.Requests.size(), 3U);
    EXPECT_EQ(
        rig.Web.Requests[0].Body,
        "TRN=EML&Key=AB%2D1&Category_ID=2&Confidence_ID=3&From=Bad+Guy+%3Cbad%40evil%2Eexample%3E&Subject=Win+100%25"
        "+now&Header=From%3A+Bad+Guy+%3Cbad%40evil%2Eexample%3E%0D%0ASubject%3A+Win+100%25+now&Body64="
        "Q2xpY2sgaGVyZQ0KaHR0cDovL2V2aWwuZXhhbXBsZS9hP2I9MQ0K");
    EXPECT_EQ(
        rig.Web.Requests[1].Body,
        "TRN=URL&Key=AB%2D1&Category_ID=2&Confidence_ID=4&Visible_URL=http%3A%2F%2Fevil%2Eexample%2Fa%2Cb%3Fx%3D1%26"
        "y%3D2&Main_URL=http%3A%2F%2Fevil%2Eexample%2Fa");
    EXPECT_EQ(rig.Web.Requests[0].Service + rig.Web.Requests[0].Key, "SUBDBSVRAB-1");
    EXPECT_EQ(rig.Stored(), (Lines{"URL|12-000346|http://127.0.0.1//|http://0x7f.1/",
                                   "URL|12-000346|http://evil.example/a,b|http://evil.example/a",
                                   "EMAIL|12-000345|Win 100% now|3202"}));
    EXPECT_EQ(rig.Names(), "2.X");
    EXPECT_EQ(rig.Redisplayed, 3);
    rig.Start();
    EXPECT_EQ(rig.Stored().size(), 3U);
}

TEST(Send, DoesWhatTheAnswerSays) {
    enum Effect { Taken, Nothing, Refused, Failed };
    const Text add = "16|Trawlbeam|Error Submissions Add: ";
    const Text nine = add + "9 " + ErrorText(9);
    const Text thirteen = add + "13 " + ErrorText(13);
    const auto said = [](const char* text) { return Text("64|Trawlbeam|") + text; };
    const struct {
        Text Error, Reply;
        Effect Does;
        Text Shown;
    } cases[] = {{"", "12-345 thanks", Taken, ""},
                 {"", "", Nothing, ""},
                 {"", "Error x", Nothing, ""},
                 {"", "error x", Taken, nine},
                 {"", "<html>", Taken, nine},
                 {"", "12-3x", Taken, thirteen},
                 {"", "-1", Refused, ""},
                 {"", "-1 Sorry ", Refused, said("Sorry")},
                 {"", "-1Sorry", Refused, said("orry")},
                 {"", " -1 x", Taken, nine},
                 {"t/o", "", Failed, ""},
                 {"t/o", "12-345", Failed, ""},
                 {"t/o", " -1 No", Refused, said("No")}};
    for (const auto& [error, reply, does, shown] : cases) {
        for (const bool isMail : {true, false}) {
            SendRig rig;
            rig.Queue(isMail ? "0.E" : "0.U", isMail ? Mail : Link);
            rig.Script(isMail ? EmailPage : UrlPage, error, reply);
            const Text last = rig.Run().back();
            const char* const lines[] = {"1 Update Submission: ", "0 Submi", "0 Deleting ", "0 Error submitting "};
            const bool lacksId = does == Taken && !shown.empty();
            const Text line = lacksId ? "0 Deleting submission without identifier: " : lines[does];
            EXPECT_EQ(last.rfind(line, 0), 0U) << last;
            EXPECT_TRUE(does == Nothing || last.ends_with(reply)) << last;
            EXPECT_EQ(Join(rig.TakeShown(), "&"), shown) << reply;
            EXPECT_EQ(rig.Names().empty(), does == Taken || does == Refused) << reply;
            EXPECT_EQ(rig.DB->Count(), does == Taken && !lacksId ? 1 : 0) << reply;
        }
    }
}

TEST(Send, PutsAFileAsideAtTheSixthFailure) {
    for (const bool isMail : {true, false}) {
        SendRig rig;
        const Text name = isMail ? "0.E" : "0.U";
        const Text page = isMail ? EmailPage : UrlPage;
        rig.Queue(name, isMail ? Mail : Link);
        rig.Queue("Error/" + name, "older");
        const auto fail = [&](int times) {
            for (int time = 0; time < times; ++time) {
                EXPECT_EQ(rig.Names(), name + " !" + name);
                rig.Script(page, "t/o", "");
                rig.Run();
            }
        };
        fail(5);
        // An empty reply does nothing else but clear the count; so does a start.
        rig.Script(page, "", "");
        rig.Run();
        fail(5);
        rig.Start();
        fail(5);
        rig.Script(page, "t/o", "r");
        rig.Run();
        EXPECT_EQ(rig.TakeShown(), isMail ? Lines{"0|Trawlbeam|Error submitting email: t/o r"} : Lines());
        EXPECT_EQ(rig.Names(), "!" + name);
        EXPECT_EQ(rig.File("InProcess/Error/" + name), isMail ? Mail : Link);
    }
}

TEST(Send, LeavesOrMovesWhatItCannotRead) {
    const struct {
        Text Name, Content, LastLine;
        bool IsTold = false;
        bool Moves = false;
    } cases[] = {
        {"7.U", "no line end", "0 Error Submissions ReadFile: " + ErrorText(5), true},
        {"7.E", "", "0 Error Submissions ReadFile: " + ErrorText(5), true},
        {"7.E", " 2 , 3\r\nx", "0 Error Submissions ReadFile: " + ErrorText(9)},
        {"7.E", "\r\nx", "0 Error Submissions ReadFile: " + ErrorText(9)},
        {"7.E", "x,3,4\r\nx", "0 Error Submissions ReadFile: " + ErrorText(13)},
        {"7.E", "2,32768,4\r\nx", "0 Error Submissions ReadFile: " + ErrorText(6)},
        {"7.E", "2,3,0\r\nno blank line\r\n", "0 Error parsing email, moving to error directory: 7.E", false, true},
    };
    for (const auto& [name, content, lastLine, isTold, moves] : cases) {
        SendRig rig;
        rig.Queue(name, content);
        EXPECT_EQ(rig.Run().back(), lastLine);
        EXPECT_EQ(rig.Names(), moves ? "!" + name : name);
        EXPECT_EQ(rig.TakeShown(), isTold ? Lines{"16|Trawlbeam|Error with submission & readfile"} : Lines());
        EXPECT_TRUE(rig.Web.Requests.empty());
    }
}

TEST(Send, AsksBeforeEachPostOfATestAndThanks) {
    SendRig rig;
    rig.Set("BlockSendSubmission", "1");
    rig.Set("ConfirmSubmission", "1");
    for (const bool yes : {false, true}) {
        rig.Queue("0.U", Link);
        rig.Web.Replies[UrlPage] = "1-1";
        rig.System.Dialogs.Answer = yes ? 6 : 7;
        rig.Run();
        EXPECT_EQ(rig.TakeShown().size(), yes ? 2U : 1U);
        EXPECT_EQ(rig.Web.Requests.size(), yes ? 1U : 0U);
        EXPECT_EQ(rig.Names(), "");
    }
}

TEST(Send, TakesWhatIsDroppedMeanwhileWithoutSendingTwice) {
    SendRig rig;
    rig.Queue("0.U", Link);
    bool dropped = false;
    rig.Web.Meanwhile = [&](const FakeWeb::Request&) {
        if (std::exchange(dropped, true)) return;
        rig.Queue("1.U", Link);
        rig.DB->ProcessSubmissions();
    };
    rig.Run();
    EXPECT_EQ(rig.Web.Requests.size(), 2U);
}

// The program goes while a post waits: the object lives on until the run has recorded the answer, and sends no more.
TEST(Send, OutlivesItsOwner) {
    SendRig rig;
    rig.Queue("0.U", Link);
    rig.Queue("1.U", Link);
    rig.Web.Replies[UrlPage] = "1-1";
    rig.Web.Meanwhile = [&](const FakeWeb::Request&) {
        rig.DB.reset();
        rig.Program.Settings.reset();
    };
    rig.Run();
    EXPECT_EQ(rig.Web.Requests.size(), 1U);
    EXPECT_EQ(rig.Names(), "1.U");
    EXPECT_NE(rig.File("submissions.xml").find("evil"), Text::npos);
}

TEST(Send, NeverPostsAgainWhatWasAnswered) {
    SendRig rig;
    auto& readOnly = rig.System.Files.ReadOnly;
    rig.Queue("0.U", Link);
    rig.Queue("1.E", Mail);
    rig.Web.Replies = {{UrlPage, "1-1"}, {EmailPage, "-1 no"}};
    readOnly = {"/app/Data/submissions.xml", "/app/Data/InProcess/1.E"};
    rig.Run();
    rig.Run();
    // The list is not on the disk, so the file stays for it.
    EXPECT_EQ(rig.Names(), "0.U 1.E");
    EXPECT_EQ(rig.Web.Requests.size(), 2U);
    readOnly = {"/app/Data/InProcess/0.U"};
    rig.Run();
    EXPECT_EQ(rig.Names(), "0.U");
    readOnly.clear();
    rig.Run();
    EXPECT_EQ(rig.Names(), "");
    EXPECT_EQ(rig.Web.Requests.size(), 2U);
    rig.Start();
    EXPECT_EQ(rig.Stored().size(), 1U);
    // But another file of that name is posted.
    rig.Queue("2.U", Link);
    readOnly = {"/app/Data/InProcess/2.U"};
    rig.Run();
    rig.System.Files.Contents.erase("/app/Data/InProcess/2.U");
    rig.Run();
    rig.Queue("2.U", Link);
    rig.Run();
    EXPECT_EQ(rig.Web.Requests.size(), 4U);
}

}  // namespace
}  // namespace tb
