#include <gtest/gtest.h>

#include "submissions/SubmissionRig.h"

namespace tb {
namespace {

const Text EmailPage = "SubmitEmail.aspx";
const Text UrlPage = "SubmitURL.aspx";
const Text Mail =
    " 2 , 3 , 3202 \r\nFrom: Bad Guy <bad@evil.example>\r\nSubject: Win 100% now\r\n\r\nClick here\r\n"
    "http://evil.example/a?b=1\r\n";
const Text MailSender = "Bad Guy <bad@evil.example> Win 100% now";
const Text Link = " 2 , 4 ,http://evil.example/a,b\r\nhttp://evil.example/a,b?x=1&y=2";

struct SendRig : SubmissionRig {
    SendRig() { Log.Take(); }
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
    rig.Queued("0.e") = Mail;
    rig.Queued("1.U") = Link;
    rig.Queued("2.X") = "stays";
    rig.Queued("3.U") = " 2 , 4 ,http://0x7f.1/\r\nhttp://0x7f.1//?q";
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
    EXPECT_EQ(rig.Queue(), "2.X");
    EXPECT_EQ(rig.Redisplayed, 3);
    EXPECT_EQ(rig.System.Processes.Trims.size(), 3U);
    rig.Start();
    EXPECT_EQ(rig.Stored().size(), 3U);
}

TEST(Send, DoesWhatTheFileAndTheAnswerSay) {
    const Text add = "16|Trawlbeam|Error Submissions Add: ";
    const Text unread = "0 Error Submissions ReadFile: ";
    const Text tooLong(Sender::SmallReplyLimit + 1, ' ');
    const Text submitting = "0 Submitting URL: http://evil.example/a,b?x=1&y=2";
    const Text refused = "0 Deleting URL (Code -1): http://evil.example/a,b?x=1&y=2 ";
    const Text untracked = "0 Deleting submission without identifier: http://evil.example/a,b?x=1&y=2 ";
    const struct {
        Text Name, Content, Error, Reply, LastLine, Queue, Shown;
        int Recorded = 0;
    } cases[] = {
        {"7.U", Link, "", "12-345 thanks", "1 Update Submission: 12-345 thanks", "", "", 1},
        {"7.U", Link, "", "", submitting, "7.U", ""},
        {"7.U", Link, "", "Error x", submitting, "7.U", ""},
        {"7.U", Link, "", "error x", untracked + "error x", "", add + "9 " + ErrorText(9)},
        {"7.U", Link, "", "12-3x", untracked + "12-3x", "", add + "13 " + ErrorText(13)},
        {"7.U", Link, "", " -1 x", untracked + " -1 x", "", add + "9 " + ErrorText(9)},
        {"7.U", Link, "", "-1", refused + "-1", "", ""},
        {"7.U", Link, "", "-1Sorry ", refused + "-1Sorry ", "", "64|Trawlbeam|orry"},
        {"7.U", Link, "t/o", " -1 No", refused + " -1 No", "", "64|Trawlbeam|No"},
        {"7.U", Link, "t/o", "12-345", "0 Error submitting URL: t/o 12-345", "7.U", ""},
        {"7.U", Link, "", tooLong, "0 Error submitting URL: one: the reply is longer than 1048576 bytes ", "7.U", ""},
        {"7.E", Mail, "", "-1", "0 Deleting submission email (Code -1): " + MailSender + " -1", "", ""},
        {"7.E", "no line end", "", "", unread + ErrorText(5), "7.E", "16|Trawlbeam|Error with submission & readfile"},
        {"7.E", " 2 , 3\r\nx", "", "", unread + ErrorText(9), "7.E", ""},
        {"7.E", "x,3,4\r\nx", "", "", unread + ErrorText(13), "7.E", ""},
        {"7.E", "2,32768,4\r\nx", "", "", unread + ErrorText(6), "7.E", ""},
        {"7.E", "2,3,0\r\nH\r\n", "", "", "0 Error parsing email, moving to error directory: 7.E", "!7.E", ""},
    };
    for (const auto& [name, content, error, reply, lastLine, queue, shown, recorded] : cases) {
        SendRig rig;
        rig.Queued(name) = content;
        rig.Script(UrlPage, error, reply);
        rig.Script(EmailPage, error, reply);
        EXPECT_EQ(rig.Run().back(), lastLine);
        EXPECT_EQ(rig.Queue(), queue) << lastLine;
        EXPECT_EQ(Join(rig.TakeShown(), "&"), shown) << lastLine;
        EXPECT_EQ(rig.DB->Count(), recorded) << lastLine;
        EXPECT_EQ(rig.Web.Requests.empty(), name == "7.E" && content != Mail) << lastLine;
    }
}

TEST(Send, PutsAFileAsideAtTheSixthFailure) {
    for (const bool isMail : {true, false}) {
        SendRig rig;
        const Text name = isMail ? "0.E" : "0.U";
        const Text content = isMail ? Mail : Link;
        const auto answer = [&](const Text& error, const Text& reply) {
            rig.Queued(name) = content;
            rig.Script(isMail ? EmailPage : UrlPage, error, reply);
            rig.Run();
        };
        const auto fail = [&] {
            for (int time = 0; time < 5; ++time) answer("t/o", "");
            EXPECT_EQ(rig.Queue(), name + " !" + name);
        };
        rig.Queued("Error/" + name) = "older";
        // An empty reply does nothing else but clear the count. The other answers are for a file that goes: another of
        // its name begins anew, as it does after a start.
        for (const Text reply : {"", "1-1", "-1", "x"}) {
            fail();
            answer("", reply);
        }
        rig.TakeShown();
        fail();
        rig.Start();
        fail();
        answer("t/o", "r");
        EXPECT_EQ(rig.TakeShown(), isMail ? Lines{"0|Trawlbeam|Error submitting email: t/o r"} : Lines());
        EXPECT_EQ(rig.Queue(), "!" + name);
        EXPECT_EQ(rig.Queued("Error/" + name), content);
        fail();
    }
}

TEST(Send, AsksBeforeEachPostOfATestAndThanks) {
    SendRig rig;
    rig.Set("BlockSendSubmission", "1");
    rig.Set("ConfirmSubmission", "1");
    rig.Web.Replies[UrlPage] = "1-1";
    for (const bool yes : {false, true}) {
        rig.Queued("0.U") = " 2 , 4 ,http://a/\r\nhttp://a/?x";
        rig.System.Dialogs.Answer = yes ? 6 : 7;
        EXPECT_EQ(rig.Run().back(), yes ? "1 Update Submission: 1-1" : "1 Deleting file for testing 0.U");
        Lines shown{
            "36|Send to Web Service|File: 0.U\r\nTRN=URL\r\nKey=AB%2D1\r\nCategory_ID=2\r\nConfidence_ID=4\r\n"
            "Visible_URL=http%3A%2F%2Fa%2F%3Fx\r\nMain_URL=http%3A%2F%2Fa%2F"};
        if (yes) shown.push_back("64|Trawlbeam|Thank you for your submission: \r\n    'http://a/'");
        EXPECT_EQ(rig.TakeShown(), shown);
        EXPECT_EQ(rig.Web.Requests.size(), yes ? 1U : 0U);
        EXPECT_EQ(rig.Queue(), "");
    }
}

TEST(Send, TakesWhatIsDroppedMeanwhileWithoutSendingTwice) {
    SendRig rig;
    rig.Queued("0.U") = Link;
    bool dropped = false;
    rig.Web.Meanwhile = [&](const FakeWeb::Request&) {
        if (std::exchange(dropped, true)) return;
        rig.Queued("1.U") = Link;
        rig.DB->ProcessSubmissions();
    };
    rig.Run();
    EXPECT_EQ(rig.Web.Requests.size(), 2U);
}

// The program goes while a post waits: the object lives on until the run has recorded the answer, and sends no more.
TEST(Send, OutlivesItsOwner) {
    SendRig rig;
    rig.Queued("0.U") = Link;
    rig.Queued("1.U") = Link;
    rig.Web.Replies[UrlPage] = "1-1";
    rig.Web.Meanwhile = [&](const FakeWeb::Request&) {
        rig.DB.reset();
        rig.Program.Settings.reset();
    };
    rig.Run();
    EXPECT_EQ(rig.Web.Requests.size(), 1U);
    EXPECT_EQ(rig.Queue(), "1.U");
    EXPECT_NE(rig.File("submissions.xml").find("evil"), Text::npos);
}

TEST(Send, NeverPostsAgainWhatWasAnswered) {
    SendRig rig;
    auto& readOnly = rig.System.Files.ReadOnly;
    rig.Queued("0.U") = Link;
    rig.Queued("1.E") = Mail;
    rig.Web.Replies = {{UrlPage, "1-1"}, {EmailPage, "-1 no"}};
    readOnly = {"/app/Data/submissions.xml", "/app/Data/InProcess/1.E"};
    rig.Run();
    rig.Run();
    // The list is not on the disk, so the file stays for it.
    EXPECT_EQ(rig.Queue(), "0.U 1.E");
    EXPECT_EQ(rig.Web.Requests.size(), 2U);
    readOnly = {"/app/Data/InProcess/0.U"};
    rig.Run();
    EXPECT_EQ(rig.Queue(), "0.U");
    readOnly.clear();
    rig.Run();
    EXPECT_EQ(rig.Queue(), "");
    EXPECT_EQ(rig.Web.Requests.size(), 2U);
    rig.Start();
    EXPECT_EQ(rig.Stored().size(), 1U);
    // But another file of that name is posted.
    rig.Queued("2.U") = Link;
    readOnly = {"/app/Data/InProcess/2.U"};
    rig.Run();
    rig.System.Files.Contents.erase("/app/Data/InProcess/2.U");
    rig.Run();
    rig.Queued("2.U") = Link;
    rig.Run();
    EXPECT_EQ(rig.Web.Requests.size(), 4U);
}

}  // namespace
}  // namespace tb
