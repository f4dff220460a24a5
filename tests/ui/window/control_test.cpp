#include <gtest/gtest.h>

#include "fakes/FakeWindowSystem.h"
#include "fakes/Raised.h"
#include "ui/window/Form.h"
#include "ui/window/Menu.h"
#include "ui/window/OptionButton.h"
#include "ui/window/PictureBox.h"
#include "ui/window/TextBox.h"
#include "ui/window/Timer.h"

namespace tb {
namespace {

class ControlTest : public ::testing::Test {
protected:
    FakeWindowSystem m_System;
    Forms m_Forms{&m_System};
    Form m_Form{m_Forms, "frmThing"};
    TextBox& m_Box = m_Form.Add<TextBox>("txtDiags");
    Timer& m_Timer = m_Form.Add<Timer>("tmUpdate");
};

// As a skin sets them: by names in any case, from texts.
TEST_F(ControlTest, PropertiesAreReachedByName) {
    const std::tuple<Control*, Text, Text, Text> properties[] = {{&m_Box, "LEFT", "120", "120"},
                                                                 {&m_Box, "text", "hello", "hello"},
                                                                 {&m_Box, "locked", "-1", "True"},
                                                                 {&m_Box, "tAg", "7", "7"},
                                                                 {&m_Box, "BackColor", "-2147483633", "-2147483633"},
                                                                 {&m_Timer, "Enabled", " true ", "True"},
                                                                 {&m_Form, "borderstyle", "0", "0"}};
    for (const auto& [control, name, value, shown] : properties) {
        control->SetProperty(name, value);
        EXPECT_EQ(control->GetProperty(name).AsText(), shown) << name;
    }
    m_Form.CallMethod("Move", {Value("30"), Value(), Value("1500"), Value("900")});
    EXPECT_EQ(m_Form.Bounds(), (TwipRect{30, 0, 1500, 900}));
}

TEST_F(ControlTest, WhatDoesNotFitIsRefusedAndChangesNothing) {
    m_Box.SetLeft(75);
    const std::tuple<Control*, Text, Value, int> properties[] = {
        {&m_Timer, "Left", "1", 438},        {&m_Box, "Name", "other", 438},       {&m_Box, "Left", "wide", 13},
        {&m_Box, "Left", "2147483648", 6},   {&m_Box, "Left", PictureRef(), 13},   {&m_Box, "Visible", "no", 13},
        {&m_Form, "Icon", "base64", 13},     {&m_Box, "Width", "-15", 380},        {&m_Form, "WindowState", "3", 380},
        {&m_Form, "BorderStyle", "-1", 380}, {&m_Timer, "Interval", "65536", 380}, {&m_Form, "MousePointer", "3", 380}};
    for (const auto& [control, name, value, error] : properties) {
        EXPECT_EQ(Raised([&, c = control, &n = name, &v = value] { c->SetProperty(n, v); }), error) << name;
    }
    EXPECT_EQ(m_Box.Bounds(), (TwipRect{75, 0, 1215, 495}));
    EXPECT_EQ(Raised([&] { m_Box.GetProperty("Move"); }), 438);
    EXPECT_EQ(Raised([&] { m_Box.CallMethod("Left"); }), 438);
    EXPECT_EQ(Raised([&] { m_Form.CallMethod("Move"); }), 450);
    EXPECT_EQ(Raised([&] { m_Form.CallMethod("Move", {1, 2, 3, 4, 5}); }), 450);
    EXPECT_EQ(Raised([&] { m_Form.CallMethod("SetFocus"); }), 5) << "hidden";
}

TEST_F(ControlTest, NamesAndArraysAreUnique) {
    Menu& head = m_Form.Add<Menu>("mnuItem", 0);
    EXPECT_EQ(m_Form.Find("MNUITEM", 0), &head);
    EXPECT_EQ(m_Form.Find("mnuItem"), nullptr);
    EXPECT_EQ(Raised([&] { m_Form.Add<Menu>("mnuItem", 0); }), 360);
    EXPECT_EQ(Raised([&] { m_Form.Add<Menu>("mnuItem"); }), 727);
    m_Form.Add<Menu>("mnuBelow", NoIndex, &m_Form.Add<Menu>("mnuInner", NoIndex, &head));
    m_Form.Remove(head);
    EXPECT_EQ(m_Form.Controls().size(), 2U) << "what a control holds goes with it";
}

TEST_F(ControlTest, AControlMayGoInsideItsOwnEvent) {
    Menu& item = m_Form.Add<Menu>("mnuOnce");
    int clicks = 0;
    item.ClickEvent.Connect([&] {
        m_Form.Remove(item);
        ++clicks;
    });
    item.ClickEvent.Connect([&] { ++clicks; });
    item.Click();
    EXPECT_EQ(clicks, 2);
    EXPECT_EQ(m_Form.Find("mnuOnce"), nullptr);
}

TEST_F(ControlTest, ATextBoxTellsOfItsOwnChangesOnceAndOfEveryTextFromOutside) {
    std::vector<Text> seen;
    m_Box.ChangeEvent.Connect([&] { seen.push_back(m_Box.GetText()); });
    m_Box.SetText("one");
    m_Box.SetText("one");
    m_Box.SetSelStart(99);
    EXPECT_EQ(m_Box.SelStart(), 3);
    m_Form.Load();
    TextBoxEvents& events = *m_System.Boxes.at("form1.box1");
    events.TextChanged("same");
    events.TextChanged("same");
    m_System.Take();
    m_Box.SetText("");
    EXPECT_EQ(seen, (std::vector<Text>{"one", "same", "same", ""}));
    EXPECT_EQ(m_System.Take(), "form1.box1.text ");
    EXPECT_EQ(Raised([&] { m_Box.SetSelStart(-1); }), 380);
}

TEST_F(ControlTest, OptionsOfOneContainerExcludeEachOther) {
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
    for (int time = 0; time < 2; ++time) m_System.Buttons.at("form1.option3")->Clicked();
    EXPECT_EQ(m_System.Take(),
              "form1.option2.unselect, form1.option3.select, form1.option2.no stop, form1.option3.stop");
    EXPECT_EQ(clicks, "opt0optOther0opt1");
    EXPECT_TRUE(options[2]->Selected()) << "another container, another group";
    options[1]->SetSelected(false);
    EXPECT_EQ(m_System.Take(), "form1.option3.unselect, form1.option2.stop, form1.option3.no stop")
        << "without a choice the first one is reached";
    m_Form.Add<OptionButton>("optLate");
    EXPECT_EQ(m_System.Calls.back(), "form1.option5.no stop");
}

}  // namespace
}  // namespace tb
