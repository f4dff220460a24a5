#include <gtest/gtest.h>

#include "submissions/StatusUpdate.h"
#include "submissions/SubmissionRig.h"

namespace tb {
namespace {

const Text Page = "SubmissionStatus.aspx";

// Notes in order what the user sees, and that messages are served.
struct StatusRig : SubmissionRig, StatusView, Activities {
    StatusRig() {
        for (const Text id : {"1-100", "1-101"}) Hold(id);
        DB->LastUpdateDate("never");
        System.Pump.OnPump = [this] {
            if (Seen.empty() || Seen.back() != "pump") Seen.push_back("pump");
        };
        Updater = std::make_shared<StatusUpdate>(DB, ServiceAccess{Program, Log, Web.Factory()}, *this, *this);
    }
    // In front of the others.
    void Hold(const Text& id) {
        System.Random.Value -= 0.01;
        DB->Add("URL", "b" + id, id, 1, System.Clock.Now(), "k");
    }
    void ShowLamp(std::int32_t state, std::int32_t blink, std::int32_t colour, const Text& caption) override {
        const Text numbers = std::to_string(state) + " " + std::to_string(blink) + " " + std::to_string(colour);
        Seen.push_back("lamp " + numbers + " " + caption);
    }
    void ShowWaitCursor(bool wait) override { Seen.push_back(wait ? "wait" : "arrow"); }
    void PlayClickSound() override { Seen.push_back("click"); }
    void RefreshDisplay() override { Seen.push_back("refresh"); }
    bool StartActivity(const Text& name, bool) override {
        Seen.push_back("start " + name);
        return Granted;
    }
    void EndActivity(const Text& name, bool) override { Seen.push_back("end " + name); }

    Lines Press() {
        Seen.clear();
        System.Pump.Slept = 0;
        Log.Take();
        Updater->cmdUpdateStatus();
        return Seen;
    }
    // "plain status/disposition" in order.
    Text States() {
        const auto state = [this] {
            return PlainId().substr(3) + " " + DB->GetAttributeValue("Status") + "/" +
                   DB->GetAttributeValue("Disposition");
        };
        return Join(Each(state), ", ");
    }
    Lines Seen;
    bool Granted = true;
    std::shared_ptr<StatusUpdate> Updater;
};

const Text StartLine = "start Updating Submission Status";
const Text EndLine = "end Updating Submission Status";
const Text Updating = "lamp 0 1 0 Updating";
const Text Complete = "lamp 0 0 16 Update Complete";
const Text Cleared = "lamp 1 0 16 ";

TEST(Status, AsksForAllAndShowsIt) {
    StatusRig rig;
    rig.Set("SOUND", "1");
    rig.Hold("1-101");
    rig.Web.Replies[Page] = "01-000100=2,2\n\n01-000101=3\n";
    EXPECT_EQ(rig.Press(), (Lines{"click", StartLine, Updating, "wait", Updating, "refresh", Complete, "pump", "arrow",
                                  Cleared, EndLine}));
    EXPECT_EQ(rig.System.Pump.Slept, 1200);
    const FakeWeb::Request& request = rig.Web.Requests.at(0);
    EXPECT_EQ(request.Body, "TRN=UPD&Key=AB%2D1&SubIds=01-000101,01-000101,01-000100");
    EXPECT_EQ(request.Service + request.Key, "SUBSTATSVRAB%2D1");
    EXPECT_EQ(rig.States(), "000101 3/1, 000100 2/2");
    const Lines lines = rig.Log.Take();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_TRUE(lines[0].starts_with("0 Error Update Submission Status, duplicate entry: ")) << lines[0];
    EXPECT_NE(rig.File("submissions.xml").find("Status='3' Disposition='1'"), Text::npos);
    // Within 90 seconds the motion alone is played.
    rig.Set("SOUND", "0");
    rig.System.Clock.Pass(89);
    EXPECT_EQ(rig.Press(), (Lines{StartLine, Updating, "wait", "pump", Complete, "pump", "arrow", Cleared, EndLine}));
    EXPECT_EQ(rig.Web.Requests.size(), 1U);
    rig.System.Clock.Pass(1);
    rig.Press();
    EXPECT_EQ(rig.Web.Requests.size(), 2U);
    rig.SetDebug();
    rig.Press();
    EXPECT_EQ(rig.Web.Requests.size(), 3U);
}

TEST(Status, ReadsReplies) {
    const Text old = "000101 1/1, 000100 1/1";
    const Text failed = "0 Error Submissions Update Status: " + ErrorText(5);
    const Text noId = "16|Trawlbeam|Error Submissions UpdateStatusID: 5 " + ErrorText(5);
    const struct {
        Text Error, Reply, States, Told;
        bool Saved = false;
    } cases[] = {
        {"", "01-000100=2,2\n01-000101=3,0", "000101 1/1, 000100 2/2", "", true},
        {"", "01-000100=\n01-000101,5=6=7\r\n", "000101 5/6, 000100 /1", "", true},
        {"", "", old, "", true},
        {"", "\n", old, "0 Error Update Submission Status (Parse)" + noId, true},
        {"", "01-000100=2,2\n1-100=3,3\n01-000101=3,3\n", "000101 1/1, 000100 2/2", failed},
        {"", "-1 no", old, "0 Error Update Submission Status, (Web Service): -1 no"},
        {"t/o", "", old, "0 Error Update Submission Status, (Sender): 0|Trawlbeam|t/o"},
    };
    for (const auto& [error, reply, states, told, saved] : cases) {
        StatusRig rig;
        rig.Web.Scripts[Page] = {{error, reply}};
        const Text before = rig.File("submissions.xml");
        const Lines seen = rig.Press();
        EXPECT_EQ(Lines(seen.end() - 3, seen.end()), (Lines{"arrow", Cleared, EndLine})) << reply;
        EXPECT_EQ(rig.States(), states) << reply;
        EXPECT_EQ(Join(rig.Log.Take(), "&") + Join(rig.TakeShown(), "&"), told);
        EXPECT_EQ(rig.File("submissions.xml") != before, saved) << reply;
        EXPECT_EQ(rig.DB->LastUpdateDate(), saved ? "11/21/2026 08:09:10" : "never");
    }
}

TEST(Status, SendsNothingWhereItMustNotBegin) {
    StatusRig rig;
    rig.Granted = false;
    EXPECT_EQ(rig.Press(), Lines{StartLine});
    rig.Granted = true;
    rig.Web.Online = false;
    EXPECT_EQ(rig.Press(), (Lines{StartLine, Updating, "arrow", Cleared, EndLine}));
    EXPECT_EQ(rig.TakeShown(), Lines{"64|Trawlbeam|Please connect to the internet to update submission status"});
    rig.DB->Delete(2);
    rig.DB->Delete(1);
    EXPECT_EQ(rig.Press(), Lines());
    EXPECT_TRUE(rig.Web.Requests.empty());
}

// The panel closes and the program drops the list while the post waits.
TEST(Status, OutlivesThePanel) {
    StatusRig rig;
    rig.Web.Replies[Page] = "01-000100=2,2\n";
    rig.Web.Meanwhile = [&](const FakeWeb::Request&) {
        rig.Updater->Detach();
        rig.Updater.reset();
        rig.DB.reset();
        rig.Program.Settings.reset();
    };
    EXPECT_EQ(rig.Press(), (Lines{StartLine, Updating, "wait", Updating, "pump", EndLine}));
    EXPECT_NE(rig.File("submissions.xml").find("Status='2'"), Text::npos);
}

}  // namespace
}  // namespace tb
