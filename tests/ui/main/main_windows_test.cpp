#include "ui/main/MainWindows.h"

#include <gtest/gtest.h>

#include "shell/ShellRig.h"
#include "submissions/SubmissionRig.h"

namespace tb {
namespace {

struct MainWindowsRig : ShellRig, DropTargets {
    MainWindowsRig() { Use(Main); }
    std::unique_ptr<DropRegistration> Register(WindowHandle, DropHandler drop, DragHandler) override {
        Dropped = std::move(drop);
        return std::make_unique<DropRegistration>();
    }
    Text Captions() {
        Text captions;
        for (const Form* form : Family.Loaded()) captions += form->Caption() + "|";
        return captions;
    }

    MainWindows Main{{Access, Family, *this}};
    std::function<void(DropData&)> Dropped;
};

TEST(MainWindows, ShowThePanelOfSubmissionsAndHandInWhatIsDroppedOnIt) {
    MainWindowsRig rig;
    ASSERT_TRUE(rig.Chain->Main());
    const Text before = rig.Captions();
    for (const char* key : {"menu1", "menu3"}) rig.Controller().MenuClick(key);
    EXPECT_EQ(rig.Captions(), before) << "they have no window";
    for (int count = 0; count < 2; ++count) rig.Controller().MenuClick("menu2");
    EXPECT_EQ(rig.Captions(), before + "Trawlbeam - Submissions|") << "one of it";
    FakeDrop nothing;
    rig.Dropped(nothing);
    EXPECT_EQ(rig.Controller().tmSub.Interval(), 1) << "a run at once";
    // What waits is shown, and stays with the submissions switched off.
    rig.System.Files.Contents["/app/Data/InProcess/a"] = "x";
    rig.Program.Settings->WriteXMLString("Timers", "SUBDB_ENABLED", "0");
    rig.Controller().Data().oSubmissionDB->RedisplaySubmissions.Raise();
    const auto& panel = dynamic_cast<frmSubmissions&>(*rig.Family.Loaded().back());
    EXPECT_TRUE(panel.lblStatus.Caption().starts_with("Waiting: 1 "));
    rig.Dropped(nothing);
    EXPECT_FALSE(rig.Controller().tmSub.Enabled());
    EXPECT_TRUE(rig.Controller().Unload(UnloadMode::Session));
    EXPECT_EQ(rig.Captions(), "");
    EXPECT_FALSE(rig.Main.ShowMainPanel(2)) << "the store has gone";
}

}  // namespace
}  // namespace tb
