// The queue by itself, and what stays of a submission whatever fails at any moment.
#include <gtest/gtest.h>

#include "submissions/SubmissionRig.h"

namespace tb {
namespace {

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
