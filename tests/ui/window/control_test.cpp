#include <gtest/gtest.h>

#include "fakes/Raised.h"
#include "ui/window/Form.h"
#include "ui/window/Menu.h"
#include "ui/window/TextBox.h"
#include "ui/window/Timer.h"

namespace tb {
namespace {

class ControlTest : public ::testing::Test {
protected:
    Forms m_Forms;
    Form m_Form{m_Forms, "frmThing"};
    TextBox& m_Box = m_Form.Add<TextBox>("txtDiags");
    Timer& m_Timer = m_Form.Add<Timer>("tmUpdate");
};

TEST_F(ControlTest, PropertiesAreReachedByNameInAnyCaseThroughTheChainOfTables) {
    m_Box.SetProperty("LEFT", "120");
    m_Box.SetProperty("text", "hello");
    m_Box.SetProperty("Visible", "False");
    m_Box.SetProperty("locked", "-1");
    m_Box.SetProperty("BackColor", "-2147483633");
    m_Box.SetProperty("tag", 7);
    EXPECT_EQ(m_Box.Left(), 120);
    EXPECT_EQ(m_Box.GetText(), "hello");
    EXPECT_FALSE(m_Box.Visible());
    EXPECT_TRUE(m_Box.Locked());
    EXPECT_EQ(m_Box.BackColor(), -2147483633);
    EXPECT_EQ(m_Box.GetProperty("tAg").AsText(), "7");
    EXPECT_EQ(m_Box.GetProperty("Name").AsText(), "txtDiags");
    EXPECT_EQ(m_Box.GetProperty("visible").AsText(), "False");
    EXPECT_EQ(m_Box.GetProperty("Locked").AsNumber(), -1);
    m_Timer.SetProperty("Interval", "1000");
    m_Timer.SetProperty("Enabled", "true");
    EXPECT_EQ(m_Timer.Interval(), 1000);
    EXPECT_TRUE(m_Timer.Enabled());
    m_Form.SetProperty("Caption", "Title");
    m_Form.SetProperty("borderstyle", "0");
    EXPECT_EQ(m_Form.GetProperty("Caption").AsText(), "Title");
    EXPECT_EQ(m_Form.BorderStyle(), 0);
    EXPECT_STREQ(m_Box.Class().Name(), "TextBox");
}

TEST_F(ControlTest, WhatDoesNotFitIsRefusedAndChangesNothing) {
    m_Box.SetLeft(75);
    EXPECT_EQ(Raised([&] { m_Box.SetProperty("Colour", "1"); }), 438);
    EXPECT_EQ(Raised([&] { m_Timer.SetProperty("Left", "1"); }), 438);
    EXPECT_EQ(Raised([&] { m_Box.SetProperty("Name", "other"); }), 438);
    EXPECT_EQ(Raised([&] { m_Box.GetProperty("Move"); }), 438);
    EXPECT_EQ(Raised([&] { m_Box.CallMethod("Left"); }), 438);
    EXPECT_EQ(Raised([&] { m_Box.SetProperty("Left", "wide"); }), 13);
    EXPECT_EQ(Raised([&] { m_Box.SetProperty("Left", ""); }), 13);
    EXPECT_EQ(Raised([&] { m_Box.SetProperty("Left", "2147483648"); }), 6);
    EXPECT_EQ(Raised([&] { m_Box.SetProperty("Left", PictureRef()); }), 13);
    EXPECT_EQ(Raised([&] { m_Box.SetProperty("Visible", "maybe"); }), 13);
    EXPECT_EQ(Raised([&] { m_Form.SetProperty("Icon", "base64"); }), 13);
    EXPECT_EQ(Raised([&] { m_Box.SetProperty("Width", "-15"); }), 380);
    EXPECT_EQ(Raised([&] { m_Form.SetWindowState(3); }), 380);
    EXPECT_EQ(Raised([&] { m_Form.SetBorderStyle(-1); }), 380);
    EXPECT_EQ(Raised([&] { m_Timer.SetInterval(65536); }), 380);
    EXPECT_EQ(m_Box.Bounds(), (TwipRect{75, 0, 1215, 495}));
    EXPECT_EQ(Error(ErrorNumber::NoSuchMember).Description, "Object doesn't support this property or method");
}

TEST_F(ControlTest, MethodsTakeConvertedArgumentsAndOptionalOnes) {
    m_Form.CallMethod("move", {"300", 450});
    EXPECT_EQ(m_Form.Bounds(), (TwipRect{300, 450, 4800, 3600}));
    m_Form.CallMethod("Move", {Value("30"), Value(), Value("1500"), Value("900")});
    EXPECT_EQ(m_Form.Bounds(), (TwipRect{30, 450, 1500, 900}));
    EXPECT_EQ(Raised([&] { m_Form.CallMethod("Move"); }), 450);
    EXPECT_EQ(Raised([&] { m_Form.CallMethod("Move", {1, 2, 3, 4, 5}); }), 450);
    EXPECT_EQ(Raised([&] { m_Form.CallMethod("Move", {"x"}); }), 13);
    EXPECT_EQ(Raised([&] { m_Form.CallMethod("SetFocus"); }), 5) << "hidden";
    m_Form.CallMethod("Show");
    EXPECT_TRUE(m_Form.Visible());
    EXPECT_EQ(Raised([&] { m_Form.CallMethod("SetFocus"); }), 0);
}

TEST(Values, ConvertAsThePropertiesOfASkinNeedIt) {
    EXPECT_EQ(Value("2.5").AsNumber(), 2);
    EXPECT_EQ(Value(" -7 ").AsNumber(), -7);
    EXPECT_EQ(Value(true).AsNumber(), -1);
    EXPECT_EQ(Value().AsNumber(), 0);
    for (const char* text : {"True", "TRUE", " true ", "1", "-1", "0.5"}) EXPECT_TRUE(Value(text).AsBoolean()) << text;
    for (const char* text : {"False", "false", "0", "0.0"}) EXPECT_FALSE(Value(text).AsBoolean()) << text;
    EXPECT_EQ(Value(-5).AsText(), "-5");
    EXPECT_EQ(Value().AsPicture(), nullptr);
    EXPECT_EQ(Raised([] { Value("x").AsPicture(); }), 13);
}

TEST(Twips, FollowTheScreen) {
    EXPECT_EQ(TwipScale(96).ToPixels(3600), 240);
    EXPECT_EQ(TwipScale(96).ToTwips(241), 3615);
    EXPECT_EQ(TwipScale(144).ToPixels(3600), 360);
    EXPECT_EQ(TwipScale(120).ToTwips(10), 120);
    EXPECT_EQ(TwipScale(96).ToPixels(-4800), -320);
    EXPECT_EQ(Raised([] { TwipScale(96).ToTwips(2147483647); }), 6);
}

TEST_F(ControlTest, NamesAndArraysAreUnique) {
    m_Form.Add<Menu>("mnuItem", 0);
    Menu& second = m_Form.Add<Menu>("MNUITEM", 3);
    EXPECT_EQ(m_Form.Find("mnuitem", 3), &second);
    EXPECT_EQ(m_Form.Find("mnuItem"), nullptr);
    EXPECT_EQ(Raised([&] { m_Form.Add<Menu>("mnuItem", 3); }), 360);
    EXPECT_EQ(Raised([&] { m_Form.Add<Menu>("mnuItem"); }), 727);
    EXPECT_EQ(Raised([&] { m_Form.Add<TextBox>("TxtDiags", 0); }), 727);
    EXPECT_EQ(m_Form.Controls().size(), 4U);
    EXPECT_EQ(second.Container(), &m_Form);
    EXPECT_EQ(second.Parent(), &m_Form);

    Menu& head = m_Form.Add<Menu>("mnuHead");
    m_Form.Add<Menu>("mnuBelow", NoIndex, &m_Form.Add<Menu>("mnuInner", NoIndex, &head));
    m_Form.Remove(head);
    EXPECT_EQ(m_Form.Controls().size(), 4U) << "what a control holds goes with it";
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

TEST_F(ControlTest, ATextBoxTellsOfEveryChangeOnce) {
    std::vector<Text> seen;
    m_Box.ChangeEvent.Connect([&] { seen.push_back(m_Box.GetText()); });
    m_Box.SetText("one");
    m_Box.SetText("one");
    m_Box.SetSelStart(99);
    EXPECT_EQ(m_Box.SelStart(), 3);
    m_Box.SetText("");
    EXPECT_EQ(seen, (std::vector<Text>{"one", ""}));
    EXPECT_EQ(m_Box.SelStart(), 0);
    EXPECT_EQ(Raised([&] { m_Box.SetSelStart(-1); }), 380);
}

TEST_F(ControlTest, ATimerTicksOnlyWhileItRuns) {
    int ticks = 0;
    m_Timer.TimerEvent.Connect([&] { ++ticks; });
    m_Timer.Tick();
    m_Timer.SetEnabled(true);
    m_Timer.Tick();
    EXPECT_EQ(ticks, 0) << "no interval";
    m_Timer.SetInterval(1000);
    m_Timer.Tick();
    m_Timer.SetEnabled(false);
    m_Timer.Tick();
    EXPECT_EQ(ticks, 1);
}

}  // namespace
}  // namespace tb
