// The windows of the submissions, with windows that are only remembered.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/FakeWindowSystem.h"
#include "submissions/SubmissionRig.h"
#include "submissions/forms/frmSubCat.h"
#include "submissions/forms/frmSubmissions.h"

namespace tb {
namespace {

using ::testing::Contains;
using ::testing::ContainsRegex;

struct FormsRig : SubmissionRig, DropTargets, Activities {
    bool StartActivity(const Text&, bool) override { return true; }
    void EndActivity(const Text&, bool) override { ++Ended; }
    std::unique_ptr<DropRegistration> Register(WindowHandle, DropHandler drop, DragHandler) override {
        struct Registration : DropRegistration {
            explicit Registration(int& live) : Live(live) { ++Live; }
            ~Registration() override { --Live; }
            int& Live;
        };
        Dropped = std::move(drop);
        return std::make_unique<Registration>(Registrations);
    }
    std::shared_ptr<frmSubmissions> Window() {
        return std::make_shared<frmSubmissions>(
            Family, frmSubmissions::Parts{DB, {Program, Log, Web.Factory()}, *this, *this, [] {}});
    }
    // The form of the dialog that is open.
    Form& Open() { return *Family.Loaded().back(); }
    template <typename Type>
    Type& Find(const Text& name, std::int32_t index = NoIndex) {
        return dynamic_cast<Type&>(*Open().Find(name, index));
    }

    FakeWindowSystem Windows;
    Forms Family{&Windows};
    SubCatWindows SubCat{Family, Program, Log};
    std::function<void(DropData&)> Dropped;
    int Registrations = 0;
    int Ended = 0;
};

TEST(SubmissionForms, TheDialogShowsTheRowsAndTellsTheChoice) {
    FormsRig rig;
    rig.Program.HelpFile = "Trawlbeam.chm";
    QualifiersDialog dialog(rig.Program, rig.Log);
    dialog.Setup(ParseXml("<C><C ID='1'/><C ID='2' NAME='Bank' DESC='Bank spoof'/><C ID='3' NAME='Odd'/></C>"), "R&D",
                 "2", "3");
    const auto show = [&](const std::function<void()>& act) {
        rig.Windows.WhileModal = act;
        rig.SubCat.ShowModal(dialog, {450, 300});
        return std::to_string(dialog.Result) + " " + std::to_string(dialog.CategoryID) + " " +
               std::to_string(dialog.ConfidenceID);
    };
    EXPECT_EQ(show([&] { rig.Open().Unload(UnloadMode::User); }), "0 0 0");
    EXPECT_EQ(show([&] { rig.SubCat.Close(); }), "0 0 0");
    EXPECT_EQ(show([] {}), "0 0 0");
    EXPECT_EQ(show([&] { rig.Find<CommandButton>("cmdCancel").Click(); }), "0 -1 -1");
    const auto choose = [&] {
        EXPECT_EQ(rig.Open().Caption(), "Assign Submission Category");
        EXPECT_FALSE(rig.Find<Label>("lblTop").UseMnemonic());
        EXPECT_EQ(rig.Open().ScaleWidth(), 6240) << "without the frame";
        EXPECT_EQ(rig.Find<OptionButton>("optCat0").ToolTipText(), "Bank spoof");
        EXPECT_EQ(rig.Find<OptionButton>("optCat1").Top(), 285);
        EXPECT_EQ(rig.Find<OptionButton>("optCat1").Tag(), "3");
        EXPECT_EQ(rig.Find<OptionButton>("optConfidence", 0).ToolTipText(), "Low Confidence");
        EXPECT_TRUE(rig.Find<OptionButton>("optConfidence", 3).Selected());
        EXPECT_EQ(rig.Find<CommandButton>("cmdOK").Caption(), "OK");
        EXPECT_THAT(rig.Windows.Calls, Contains(ContainsRegex("option[0-9]+[.]focus"))) << "the choice that stands";
        rig.Windows.FormsByName.rbegin()->second->Activated(true);
        EXPECT_NE(rig.Windows.Take().find(".top-most active"), Text::npos) << "each time it comes to the front";
        rig.Find<OptionButton>("optConfidence", 1).SetSelected(true);
        rig.Find<OptionButton>("optCat1").SetSelected(true);
        rig.Find<CommandButton>("cmdHelp").Click();
        EXPECT_EQ(rig.System.Processes.Started, Lines{"hh.exe -mapid 2000 /app\\Trawlbeam.chm"});
        rig.Find<CommandButton>("cmdOK").Click();
    };
    EXPECT_EQ(show(choose), "1 3 1");
    EXPECT_TRUE(rig.Family.Loaded().empty());
    EXPECT_EQ(rig.Windows.Live, 0);
}

TEST(SubmissionForms, TheDialogWearsTheSkin) {
    FormsRig rig;
    rig.Program.AppBackColor = 1234;
    QualifiersDialog dialog(rig.Program, rig.Log);
    dialog.Setup(ParseXml("<C><C ID='2' NAME='Bank'/></C>"), "a", "2", "3");
    const auto show = [&](const Text& element, const std::function<void(frmSubCat&)>& look) {
        rig.Program.SkinRoot = ParseXml("<S>" + element + "</S>");
        rig.Windows.WhileModal = [&] { look(dynamic_cast<frmSubCat&>(rig.Open())); };
        rig.SubCat.ShowModal(dialog, {0, 0});
    };
    show("", [&](const frmSubCat& form) {
        EXPECT_EQ(form.BackColor(), Color(1234));
        EXPECT_EQ(form.BorderStyle(), 3);
        EXPECT_EQ(rig.SubCat.Extent(dialog).Width, 6240 + 2 * 1050);
    });
    const Text dress =
        "<W Name='frmSubCat' FormBackColor='77' Height='900'><Caption CaptionHeight='420' Close='1'/><Components><C "
        "Name='lblTop' ForeColor='9'/></Components></W>";
    show(dress, [&](const frmSubCat& form) {
        EXPECT_EQ(form.BorderStyle(), 0);
        EXPECT_EQ(form.tbSkin1.Caption(), "Assign Submission Category");
        for (const VisualControl* part : std::initializer_list<const VisualControl*>{
                 &form, &form.picBody, &form.lblCat, &form.picConfidence, &form.FrameTop, &form.lblTop}) {
            EXPECT_EQ(part->BackColor(), Color(77)) << part->Name();
        }
        EXPECT_EQ(rig.Find<OptionButton>("optConfidence", 4).BackColor(), Color(77));
        EXPECT_EQ(rig.Find<OptionButton>("optCat0").ForeColor(), Color(9)) << "as the other texts";
        EXPECT_EQ(form.ScaleHeight() - form.cmdOK.Top() - form.cmdOK.Height(), 120) << "not as high as the skin says";
        EXPECT_EQ(rig.SubCat.Extent(dialog).Height, form.Height());
        EXPECT_EQ(form.tbSkin1.Left() + form.tbSkin1.Width(), form.ScaleWidth() - 45) << "the caption is as wide";
        form.tbSkin1.ucX1.ClickEvent.Raise();
        EXPECT_FALSE(form.IsLoaded());
    });
    EXPECT_EQ(dialog.Result + dialog.CategoryID + dialog.ConfidenceID, 0) << "nothing was said";
}

TEST(SubmissionForms, TheWindowTakesDropsWhileItIsOpen) {
    FormsRig rig;
    auto window = rig.Window();
    window->Show();
    EXPECT_EQ(rig.Registrations, 1);
    EXPECT_EQ(window->lblDrop.Top(), 630) << "in the middle";
    EXPECT_EQ(window->lblStatus.Caption(), "Waiting: 0   Recorded: 0");
    FakeDrop drop;
    drop.Formats[PlainTextFormat] = "http://a.example/";
    rig.Dropped(drop);
    EXPECT_EQ(window->lblStatus.Caption(), "Waiting: 1   Recorded: 0");
    window->Unload(UnloadMode::User);
    EXPECT_EQ(rig.Registrations, 0);
    rig.System.Files.Contents.erase("/app/Data/InProcess/0.U");
    window->tmRefresh.Tick();
    EXPECT_EQ(window->lblStatus.Caption(), "Waiting: 0   Recorded: 0");
    window.reset();
    rig.Dropped(drop);
    EXPECT_EQ(rig.Queue(), "") << "a drop on its way to a window that has gone";
}

// The update goes on when the window goes.
TEST(SubmissionForms, TheWindowShowsTheUpdate) {
    FormsRig rig;
    rig.DB->Add("URL", "b", "1-100", 1, rig.System.Clock.Now(), "k");
    auto window = rig.Window();
    window->Show();
    EXPECT_FALSE(window->LEDStat.Visible());
    rig.System.Pump.OnPump = [&] {
        if (!window) return;
        EXPECT_EQ(window->LEDStat.Caption(), "Update Complete");
        EXPECT_TRUE(window->LEDStat.Visible());
        window->Unload();
        window.reset();
    };
    window->cmdUpdateStatus.Click();
    EXPECT_FALSE(window);
    EXPECT_EQ(rig.Ended, 1);
}

}  // namespace
}  // namespace tb
