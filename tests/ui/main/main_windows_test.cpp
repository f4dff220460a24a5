#include "ui/main/MainWindows.h"

#include <gtest/gtest.h>

#include "fakes/FakeWindowSystem.h"
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

// The letters that choose something in a window, those of its menus aside; those that two have.
Text TwiceInAWindow(const Form& form) {
    Text letters;
    Text twice;
    for (const auto& control : form.Controls()) {
        const auto* const label = dynamic_cast<Label*>(control.get());
        const PropertyEntry* const caption = control->Class().FindProperty("Caption");
        // What is read only, and what the bar shows, is drawn as it is.
        if (caption == nullptr || (label != nullptr && !label->UseMnemonic())) continue;
        if (dynamic_cast<tbSkin*>(control.get()) != nullptr || dynamic_cast<Menu*>(control.get()) != nullptr) continue;
        const Text text = UpperCase(caption->Get(*control).AsText());
        const Text letter = text.substr(std::min(text.find('&'), text.size()), 2);
        if (letter.size() == 2 && letters.find(letter) != Text::npos) twice += text + "|";
        letters += letter;
    }
    return twice;
}

TEST(MainWindows, HaveNoMnemonicTwice) {
    MainWindowsRig rig;
    ASSERT_TRUE(rig.Chain->Main());
    rig.Controller().MenuClick("menu2");
    std::set<Text> seen;
    const auto look = [&](const Forms& family) {
        for (const Form* form : family.Loaded()) {
            seen.insert(form->Name());
            EXPECT_EQ(TwiceInAWindow(*form), "") << form->Name();
        }
    };
    look(rig.Family);
    // Dialogs stay open on a system only.
    FakeWindowSystem system;
    Forms family(&system);
    MainWindows dialogs{{rig.Access, family, rig}};
    system.WhileModal = [&] {
        look(family);
        family.Loaded().back()->Unload(UnloadMode::User);
    };
    for (std::int32_t row = 0; row < 8; ++row) {
        for (const std::int32_t help : {0, MessageButtons::Help}) {
            dialogs.Messages()->Show({"R&D && &D", row | help, "&Y", {}});
        }
    }
    QualifiersDialog dialog(rig.Program, rig.Log);
    dialog.Setup(ParseXml("<C><C ID='2' NAME='One'/><C ID='3' NAME='Two'/></C>"), "&O &C &H", "2", "3");
    dialogs.Qualifiers().ShowModal(dialog, {});
    EXPECT_EQ(seen, (std::set<Text>{"frmController", "frmMessage", "frmSubCat", "frmSubmissions", "frmSysTray"}));
    rig.Controller().Unload(UnloadMode::Session);
}

}  // namespace
}  // namespace tb
