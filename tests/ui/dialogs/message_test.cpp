// The program's message box with windows that are only remembered.
#include <gtest/gtest.h>

#include "ui/dialogs/DialogWindow.h"
#include "ui/dialogs/MessageWindows.h"
#include "ui/dialogs/frmMessage.h"
#include "ui/skin/SkinRig.h"

namespace tb {
namespace {

struct MessageRig : WindowRig {
    MessageRig() {
        Program.AppBackColor = 1234;
        Program.HelpFile = "Trawlbeam.chm";
        // Once: a box above it is another one's.
        Windows.WhileModal = [this] {
            if (const auto act = std::exchange(Act, nullptr)) act();
        };
    }
    // The answer of a box on which the user does that.
    std::int32_t Ask(std::int32_t buttons, const std::function<void()>& act, const Text& prompt = "Sure?") {
        Act = act;
        return Boxes.Show({prompt, buttons, "A title", "other.chm", 7});
    }
    frmMessage& Open() { return dynamic_cast<frmMessage&>(*Family.Loaded().back()); }
    CommandButton& Button(std::int32_t index) { return dynamic_cast<CommandButton&>(*Open().Find("cmdButton", index)); }
    FormEvents& User() { return *std::prev(Windows.FormsByName.end())->second; }

    MessageWindows Boxes{Family, Program, Log};
    std::function<void()> Act;
};

TEST(MessageBox, AnswersAsTheButtonSays) {
    MessageRig rig;
    constexpr std::int32_t Ask = MessageButtons::YesNo | MessageButtons::Exclamation;
    EXPECT_EQ(rig.Ask(Ask, [&] { rig.Button(0).Click(); }), AnswerYes);
    EXPECT_EQ(rig.Ask(Ask, [&] { rig.Button(1).Click(); }), AnswerNo);
    EXPECT_EQ(rig.Ask(Ask, [&] { rig.User().CloseAsked(); }), AnswerNo) << "Alt and F4";
    EXPECT_EQ(rig.Ask(MessageButtons::YesNoCancel, [&] { rig.User().CloseAsked(); }), AnswerCancel);
    EXPECT_EQ(rig.Ask(Ask, [&] { rig.Family.UnloadAll(); }), 0) << "the exit";
    EXPECT_EQ(rig.Ask(Ask, [&] { rig.User().SessionEnds(); }), 0);
    EXPECT_EQ(rig.System.Dialogs.Sounds, std::vector<std::int32_t>({48, 48, 48, 0, 48, 48}));
    EXPECT_TRUE(rig.Family.Loaded().empty());
    EXPECT_EQ(rig.Windows.Live, 0);
    EXPECT_FALSE(rig.Program.ModalDialogOpen());
}

TEST(MessageBox, ShowsTheMessageAndItsButtons) {
    MessageRig rig;
    rig.Ask(
        MessageButtons::YesNoCancel | MessageButtons::Help | MessageButtons::Default2 | MessageButtons::Question,
        [&] {
            EXPECT_TRUE(rig.Program.ModalDialogOpen());
            frmMessage& box = rig.Open();
            EXPECT_EQ(box.Caption(), "A title");
            EXPECT_EQ(box.tbSkin1.Caption(), "A title");
            EXPECT_EQ(box.lblMessage.Caption(), "R&D?");
            EXPECT_FALSE(box.lblMessage.UseMnemonic());
            EXPECT_TRUE(box.picIcon.Visible());
            EXPECT_EQ(box.picIcon.GetPicture()->Pixels[0], 0xFF000122U) << "the program's icon 122";
            EXPECT_GT(rig.Button(1).Left(), rig.Button(0).Left() + rig.Button(0).Width());
            EXPECT_TRUE(rig.Button(1).Default());
            EXPECT_TRUE(rig.Button(2).Cancel());
            EXPECT_EQ(rig.Button(3).Caption(), "&Help");
            const Text calls = rig.Windows.Take();
            EXPECT_GT(calls.rfind("foreground"), calls.rfind(".focus")) << "the one that has it is the default";
            rig.Button(3).Click();
            EXPECT_TRUE(box.Visible()) << "the help leaves it open";
            EXPECT_EQ(rig.System.Processes.Started, std::vector<Text>{"hh.exe -mapid 7 /app\\other.chm"});
            bool handled = false;
            box.KeyDownEvent.Raise({'C', false, true, false}, handled);
            EXPECT_EQ(rig.System.Clipboard.Content,
                      MessageAsText("A title", "R&D?", {"&Yes", "&No", "Cancel", HelpCaption}));
            EXPECT_TRUE(handled);
        },
        "R&D?");
    rig.Ask(5, [&] { EXPECT_FALSE(rig.Open().picIcon.Visible()); });
}

TEST(MessageBox, StaysOpenForAButtonThatDoesNotCloseIt) {
    MessageRig rig;
    const auto box = std::make_shared<frmMessage>(rig.Family, rig.Program, rig.Log);
    box->ButtonText({"A", "B", "C"});
    box->ButtonsUnload({true, true, false});
    std::vector<std::int32_t> heard;
    box->ButtonEvent.Connect([&](std::int32_t number) { heard.push_back(number); });
    rig.Act = [&] {
        rig.Button(2).Click();
        EXPECT_TRUE(box->Visible());
        EXPECT_EQ(box->SelectedButton(), 3);
        rig.Button(0).Click();
        EXPECT_FALSE(box->Visible());
    };
    box->ShowMessage("x");
    EXPECT_EQ(box->SelectedButton(), 1);
    EXPECT_EQ(heard, std::vector<std::int32_t>{3});
    // A shorter row, of which none closes the box: Esc does.
    box->ButtonText({"A"});
    box->ButtonsUnload({false});
    rig.Act = [&] {
        EXPECT_FALSE(rig.Button(1).Visible());
        rig.User().CloseAsked();
        EXPECT_FALSE(box->Visible());
    };
    box->ShowMessage("y");
    EXPECT_EQ(box->SelectedButton(), 0);
    box->ButtonText({"A", "B"});
    box->MessageTitle("later");
    rig.Act = [&] {
        EXPECT_TRUE(rig.Button(1).Visible());
        EXPECT_EQ(box->Caption(), "later");
    };
    box->ShowMessage("z");
    EXPECT_TRUE(rig.Program.ModalDialogOpen()) << "until it is unloaded";
    box->Unload();
    EXPECT_FALSE(rig.Program.ModalDialogOpen());
}

TEST(MessageBox, StandsOnTheScreenOfTheMouseInFrontOfItsWindow) {
    MessageRig rig;
    rig.Windows.AllScreens = {{{0, 0, 19200, 15360}, {0, 0, 19200, 15000}},
                              {{-9600, -1500, 9600, 7200}, {-9600, -1500, 9600, 6600}}};
    rig.Windows.Mouse = {-30, 0};
    Form panel(rig.Family, "frmPanel");
    Form corner(rig.Family, "frmCorner");
    corner.SetShowInTaskbar(false);
    for (Form* const form : {&panel, &corner}) form->Show();
    const auto screen = [&] {
        const frmMessage& box = rig.Open();
        EXPECT_TRUE(box.Left() >= -9600 && box.Left() + box.Width() <= 0);
        EXPECT_TRUE(box.Top() >= -1500 && box.Top() + box.Height() <= -1500 + 6600) << "not under the system's bar";
        EXPECT_LE(box.picButtons.Top() + box.picButtons.Height(), box.ScaleHeight());
    };
    rig.Ask(0, [&] {
        screen();
        EXPECT_EQ(rig.Calls(".owner"), "form3.owner form1");
        EXPECT_EQ(WindowBehind(panel), &rig.Open()) << "what comes from the box";
    });
    rig.Ask(0, screen, Text(20000, 'x'));
    panel.SetWindowState(1);
    rig.Windows.Take();
    rig.Ask(0, [&] { EXPECT_EQ(rig.Calls(".owner"), "") << "it would be hidden with it"; });
}

TEST(MessageBox, WearsTheSkin) {
    MessageRig rig;
    const auto color = [&](const Text& skin) {
        rig.SetSkin(skin);
        std::set<std::int32_t> found;
        rig.Ask(MessageButtons::YesNo, [&] {
            const frmMessage& box = rig.Open();
            EXPECT_EQ(box.ScaleHeight(), 1965) << "as designed, with a frame or without";
            for (const VisualControl* part : std::initializer_list<const VisualControl*>{
                     &box, &box.lblMessage, &box.picIcon, &box.picButtons, &rig.Button(1)}) {
                found.insert(part->BackColor().Bits());
            }
        });
        return found;
    };
    using Colors = std::set<std::int32_t>;
    EXPECT_EQ(color("<W Name='frmMessage' FormBackColor='77'/>"), Colors{77});
    EXPECT_EQ(color("<W Name='frmMessage'/>"), Colors{1234}) << "the colour it had";
    rig.Windows.IsHighContrast = true;
    for (const char* skin : {"<W Name='frmMessage'/>", "<W Name='frmMessage' FormBackColor='77'/>", ""}) {
        EXPECT_EQ(color(skin), Colors{SystemColors::ButtonFace.Bits()}) << skin;
    }
    rig.Windows.IsHighContrast = false;
    rig.Program.AppBackColor = 0;
    EXPECT_EQ(color(""), Colors{-2147483633}) << "the system's";
    EXPECT_EQ(rig.Program.AppBackColor, -2147483633);
}

}  // namespace
}  // namespace tb
