#include <gtest/gtest.h>

#include "fakes/FakeWindowSystem.h"
#include "fakes/Raised.h"
#include "ui/window/CommandButton.h"
#include "ui/window/Form.h"
#include "ui/window/Image.h"
#include "ui/window/Label.h"
#include "ui/window/PictureBox.h"
#include "ui/window/UserControl.h"

namespace tb {
namespace {

class Panel : public UserControl {
public:
    explicit Panel(const ControlPlace& place) : UserControl(place), cmdOK(Add<CommandButton>("cmdOK")) {}
    CommandButton& cmdOK;
};

class DrawingTest : public ::testing::Test {
protected:
    FakeWindowSystem m_System;
    Forms m_Forms{&m_System};
    Form m_Form{m_Forms, "frmThing"};
};

TEST_F(DrawingTest, ControlsMadeOfOthersHaveNamesOfTheirOwn) {
    m_Form.Add<Panel>("ucFirst");
    Panel& second = m_Form.Add<Panel>("ucSecond");
    int clicks = 0;
    second.cmdOK.ClickEvent.Connect([&] { ++clicks; });
    EXPECT_EQ(m_Form.Find("cmdOK"), nullptr);
    m_Form.Load();
    m_System.Buttons.at("form1.area3.button4")->Clicked();
    EXPECT_EQ(clicks, 1);
    second.Add<Label>("lblLate");
    EXPECT_EQ(m_System.Live, 6);
    m_Form.Remove(second);
    EXPECT_EQ(m_System.Live, 3) << "its controls go with it";
    m_Form.Unload();
    EXPECT_EQ(m_System.Live, 0);
    m_Form.Load();
    EXPECT_EQ(m_System.Live, 3) << "they come again with their form";
}

TEST_F(DrawingTest, PicturesGiveTheirSize) {
    Image& image = m_Form.Add<Image>("uiPic0");
    image.SetPicture(m_Forms.Decode("20x10 FF0000"));
    EXPECT_EQ(image.Bounds(), (TwipRect{0, 0, 300, 150}));
    image.SetStretch(true);
    image.SetWidth(600);
    PictureBox& box = m_Form.Add<PictureBox>("pic");
    box.SetAutoSize(true);
    box.SetProperty("Picture", m_Forms.Decode("8x4 00FF00"));
    EXPECT_EQ(box.Bounds(), (TwipRect{0, 0, 120, 60}));
    image.SetPicture(nullptr);
    EXPECT_EQ(image.Width(), 600);
}

TEST_F(DrawingTest, LabelsTakeTheSizeOfTheirText) {
    Label& label = m_Form.Add<Label>("lbl");
    label.SetAutoSize(true);
    label.SetCaption("abcd\r\nab");
    EXPECT_EQ(label.Bounds(), (TwipRect{0, 0, 360, 480}));
    label.SetWidth(900);
    label.SetWordWrap(true);
    label.SetCaption(Text(25, 'x'));
    EXPECT_EQ(label.Bounds(), (TwipRect{0, 0, 900, 720}));
    label.SetWidth(1800);
    EXPECT_EQ(label.Height(), 480);
}

TEST_F(DrawingTest, ColoursAndFractionsComeFromTexts) {
    const std::pair<const char*, std::int32_t> colours[] = {
        {"2147483663", -2147483633}, {"-2147483633", -2147483633}, {"4294967295", -1}, {"16777215", 0xFFFFFF}};
    for (const auto& [text, bits] : colours) {
        m_Form.SetProperty("BackColor", text);
        EXPECT_EQ(m_Form.BackColor(), Color(bits)) << text;
    }
    EXPECT_EQ(Raised([&] { m_Form.SetProperty("BackColor", "4294967296"); }), 6);
    EXPECT_EQ(Raised([&] { m_Form.SetProperty("BackColor", "red"); }), 13);
    m_Form.SetProperty("FontSize", "9.75");
    EXPECT_EQ(m_Form.GetProperty("FontSize").AsText(), "9.75");
    EXPECT_EQ(Raised([&] { m_Form.SetProperty("FontSize", "0"); }), 380);
}

TEST_F(DrawingTest, OwnersMayGoFirstAndAllGoAtOnce) {
    Form dialog(m_Forms, "frmDialog");
    dialog.SetOwner(&m_Form);
    m_Form.Load();
    dialog.ShowInactive();
    m_System.Take();
    m_Form.Unload();
    EXPECT_EQ(m_System.Calls[1], "form2.no owner") << "else the system would take its window along";
    Form hidden(m_Forms, "frmHidden");
    hidden.Load();
    bool isLast = false;
    m_Forms.LastUnloadedEvent.Connect([&] { isLast = true; });
    m_Forms.UnloadAll();
    EXPECT_TRUE(isLast);
    EXPECT_EQ(m_System.Live, 0);
}

TEST_F(DrawingTest, AFormCanBeBroughtOntoItsScreen) {
    const std::pair<TwipRect, TwipRect> places[] = {{{-300, -600, 3000, 1500}, {0, 0, 3000, 1500}},
                                                    {{18000, 14000, 3000, 1500}, {16200, 13500, 3000, 1500}},
                                                    {{100, 100, 2147483647, 2147483647}, {0, 0, 19200, 15000}},
                                                    {{300, 300, 3000, 1500}, {300, 300, 3000, 1500}}};
    for (const auto& [given, expected] : places) {
        m_Form.Move(given.Left, given.Top, given.Width, given.Height);
        m_Form.KeepOnScreen();
        EXPECT_EQ(m_Form.Bounds(), expected);
    }
}

}  // namespace
}  // namespace tb
