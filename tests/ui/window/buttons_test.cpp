// Buttons, labels and boxes, and forms that are shown modally.
#include <gtest/gtest.h>

#include "fakes/FakeWindowSystem.h"
#include "fakes/Raised.h"
#include "ui/window/CommandButton.h"
#include "ui/window/Form.h"
#include "ui/window/Label.h"
#include "ui/window/OptionButton.h"
#include "ui/window/PictureBox.h"

namespace tb {
namespace {

class ButtonsTest : public ::testing::Test {
protected:
    FakeWindowSystem m_System;
    Forms m_Forms{&m_System};
    Form m_Form{m_Forms, "frmButtons"};
};

TEST_F(ButtonsTest, OptionsOfOneContainerExcludeEachOther) {
    PictureBox& box = m_Form.Add<PictureBox>("picOther");
    OptionButton* const options[] = {&m_Form.Add<OptionButton>("opt", 0), &m_Form.Add<OptionButton>("opt", 1),
                                     &m_Form.Add<OptionButton>("optOther", 0, &box)};
    Text clicks;
    for (OptionButton* const option : options) {
        option->ClickEvent.Connect([&clicks, option] { clicks += option->Name() + std::to_string(option->Index()); });
    }
    options[0]->SetSelected(true);
    options[2]->SetProperty("Value", true);
    m_Form.Load();
    m_System.Take();
    // As the user does it.
    m_System.Buttons.at("form1.option3")->Clicked();
    m_System.Buttons.at("form1.option3")->Clicked();
    EXPECT_EQ(m_System.Take(),
              "form1.option2.unselect, form1.option3.select, form1.option2.no stop, form1.option3.stop");
    EXPECT_EQ(clicks, "opt0optOther0opt1");
    EXPECT_TRUE(options[2]->Selected()) << "another container, another group";
    options[1]->SetSelected(false);
    EXPECT_EQ(m_System.Take(), "form1.option3.unselect, form1.option2.stop, form1.option3.no stop")
        << "without a choice the first one is reached";
    OptionButton& late = m_Form.Add<OptionButton>("optLate");
    EXPECT_FALSE(late.Selected());
    EXPECT_EQ(m_System.Calls.back(), "form1.option5.no stop");
}

TEST_F(ButtonsTest, TheWindowsGetWhatWasSetBefore) {
    PictureBox& box = m_Form.Add<PictureBox>("pic");
    box.SetBorderStyle(1);
    Label& label = m_Form.Add<Label>("lbl", NoIndex, &box);
    label.SetUseMnemonic(false);
    label.SetCaption(Text(5000, '&'));
    CommandButton& button = m_Form.Add<CommandButton>("cmd");
    button.SetCaption("&Go");
    button.SetDefault(true);
    button.SetToolTipText("Goes");
    m_Form.Load();
    const Text calls = m_System.Take();
    for (const char* call : {"form1.frame1.show", "form1.frame1.literal2.text ", "form1.button3.tip Goes",
                             "form1.button3.text &Go, form1.button3.default, form1.button3.not cancel"}) {
        EXPECT_NE(calls.find(call), Text::npos) << call;
    }
    EXPECT_NE(calls.find(Text(1000, '&') + ","), Text::npos);
    EXPECT_EQ(calls.find(Text(1001, '&')), Text::npos);
    EXPECT_EQ(label.Caption().size(), 5000U);
    EXPECT_EQ(Raised([&] { label.SetUseMnemonic(true); }), 382);
    EXPECT_EQ(Raised([&] { box.SetBorderStyle(0); }), 382);
    EXPECT_EQ(Raised([&] { box.SetBorderStyle(2); }), 380);
    EXPECT_EQ(Raised([&] { m_Form.SetMousePointer(3); }), 380);
    m_Form.Remove(box);
    EXPECT_EQ(m_System.Take(), "form1.frame1.literal2.gone, form1.frame1.gone") << "what it holds goes first";
}

// Windows that were visible take no input until the modal one has gone, however many are open.
TEST_F(ButtonsTest, AModalFormBlocksTheOthers) {
    Form modal(m_Forms, "frmModal"), inner(m_Forms, "frmInner"), hidden(m_Forms, "frmHidden");
    m_Form.Show();
    hidden.Load();
    m_System.Take();
    const auto input = [this] {
        Text calls;
        for (const Text& call : std::exchange(m_System.Calls, {})) {
            if (call.find("able") != Text::npos) calls += call + " ";
        }
        return calls;
    };
    int waits = 0;
    m_System.WhileModal = [&] {
        if (++waits == 2) {
            EXPECT_EQ(input(), "form4.enable form1.disable form3.disable ");
            inner.Hide();
            EXPECT_EQ(input(), "form1.disable form3.enable ") << "the first one is still blocked";
            return;
        }
        EXPECT_EQ(input(), "form3.enable form1.disable ");
        m_Form.SetEnabled(false);
        m_Form.SetEnabled(true);
        input();
        inner.ShowModal();
        EXPECT_TRUE(modal.Visible());
        modal.Unload();
        EXPECT_EQ(input(), "form1.enable ");
    };
    modal.ShowModal();
    EXPECT_EQ(waits, 2);
    EXPECT_EQ(input(), "");
}

}  // namespace
}  // namespace tb
