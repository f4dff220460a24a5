#include <gtest/gtest.h>

#include "submissions/SubmissionRig.h"

namespace tb {
namespace {

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

TEST(Walk, AcceptanceKeepsTheSubmission) {
    Walk([](SubmissionRig& rig) {
        rig.Web.Replies[EmailPage] = "1-1 thanks";
        rig.DB->ProcessSubmissions();
        rig.DB->ProcessSubmissions();
    });
}

TEST(Walk, FailuresKeepTheSubmission) {
    Walk([](SubmissionRig& rig) {
        rig.Web.Errors[EmailPage] = "t/o";
        for (int time = 0; time < 6; ++time) rig.DB->ProcessSubmissions();
        rig.Web.Errors.clear();
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
