#include <gtest/gtest.h>

#include "SkinRig.h"
#include "ui/window/CommandButton.h"
#include "ui/window/Image.h"

namespace tb {
namespace {

Text Globals() {
    Text text = "<G Name='Globals'>";
    for (const char* name : {"X", "XMouseDown", "XMouseOver", "XInactive"}) {
        text += "<P Name='" + Text(name) + "'>" + PictureText("16x16 0000FF") + "</P>";
    }
    return text + "</G>";
}

Text Window(const Text& content, const Text& attributes = {}) {
    return Globals() + "<W Name='frmMessage' " + attributes + ">" + content + "</W>";
}

const Text Bar =
    "<Caption CaptionHeight='375' Close='1' CaptionTopColor1='1' CaptionTopColor2='2' CaptionTopColor3='3' "
    "CaptionLineColor1='4' CaptionLineColor2='5' CaptionActiveForeColor='6' CaptionInActiveForeColor='7' "
    "CaptionBackColor='8'>" +
    PictureText("400x25 804020") + "</Caption>";

TEST(tbSkin, FollowsTheFocus) {
    WindowRig rig;
    rig.SetSkin(Window(Bar));
    SkinnedWindow window(rig, rig.Family);
    tbSkin& skin = window.tbSkin1;
    skin.Skin();
    EXPECT_EQ(skin.CaptionState(), 1);
    EXPECT_TRUE(skin.Timer1.Enabled());
    rig.Windows.Foreground = "form1";
    rig.Windows.Take();
    const Text active = "form1.area1.area2.print 8,3 Title Tahoma bold 6";
    const Text inactive = "form1.area1.area3.print 8,3 Title Tahoma bold 7";
    const auto looks = [&] {
        const Text shown = std::to_string(skin.CaptionState()) + (skin.picCaption[0]->Visible() ? " active " : "") +
                           (skin.picCaption[1]->Visible() ? " inactive " : "") + rig.Calls("print");
        rig.Windows.Take();
        return shown;
    };
    skin.SetCaption("Title");
    EXPECT_EQ(looks(), "1 active " + active);
    skin.Timer1.Tick();
    EXPECT_EQ(looks(), "1 active ") << "nothing has changed";
    rig.Windows.Foreground = "form2";
    skin.Timer1.Tick();
    EXPECT_EQ(looks(), "-1 inactive " + inactive);
    EXPECT_TRUE(skin.Timer1.Enabled());
    skin.SetCaption("Title");
    EXPECT_EQ(looks(), "-1 inactive " + inactive);
    skin.FitWindow();
    EXPECT_EQ(looks(), "-1 inactive " + inactive);
    EXPECT_EQ(skin.picCaption[1]->Surface()->GetPixel({337, 24}), Color(0x23468D)) << "lightened once, not twice";
    rig.Windows.Foreground = "form1";
    skin.Timer1.Tick();
    EXPECT_EQ(looks(), "1 active " + active);
}

TEST(tbSkin, DragsByTheBarAndClosesByTheBox) {
    WindowRig rig;
    rig.SetSkin(Window(Bar));
    SkinnedWindow window(rig, rig.Family);
    tbSkin& skin = window.tbSkin1;
    skin.Skin();
    for (PictureBox* const bar : skin.picCaption) {
        rig.Windows.Take();
        bar->MouseDownEvent.Raise(MouseButton::Right, {0, 0});
        EXPECT_EQ(rig.Calls("drag"), "");
        bar->MouseDownEvent.Raise(MouseButton::Left, {0, 0});
        EXPECT_EQ(rig.Calls("drag"), "form1.drag");
    }
    skin.ucX1.ClickEvent.Raise();
    EXPECT_FALSE(window.IsLoaded());
}

TEST(tbSkin, LaysPicturesUnderEverything) {
    WindowRig rig;
    const Text picture = PictureText("10x5 FF0000");
    rig.SetSkin(Window("<Graphics><IMAGE Left='150' Name='x'>" + picture + "</IMAGE><picture Width='300' Visible='0'>" +
                       picture + "</picture><other/><image/></Graphics>" + Bar));
    SkinnedWindow window(rig, rig.Family);
    rig.Windows.Take();
    window.tbSkin1.Skin();
    EXPECT_EQ(window.The<Image>("uiPic0").Bounds(), (TwipRect{150, 0, 150, 75}));
    EXPECT_EQ(window.The<PictureBox>("uiPic1").Width(), 300);
    EXPECT_FALSE(window.The<PictureBox>("uiPic1").Visible());
    EXPECT_EQ(window.Find("uiPic2"), nullptr) << "the third tag ended it";
    EXPECT_NE(rig.Calls("image").find(".back"), Text::npos);
    // Two lists of pictures cannot both be laid: the window goes on without what comes behind them.
    rig.SetOverride("<W Name='frmMessage'><Graphics><image/></Graphics></W>");
    SkinnedWindow other(rig, rig.Family);
    other.tbSkin1.DressWindow();
    ASSERT_EQ(rig.Log.Lines.size(), 1u);
    EXPECT_TRUE(rig.Log.Lines[0].starts_with("0 frmMessage Skin Error: 727 ")) << rig.Log.Lines[0];
    EXPECT_FALSE(other.tbSkin1.Timer1.Enabled());
    EXPECT_TRUE(other.tbSkin1.ucX1.Visible()) << "it can be closed";
}

TEST(tbSkin, SetsPropertiesAndCallsMethods) {
    WindowRig rig;
    rig.Program.HomeURL = "http://h/";
    const Text component =
        "<C name='LBL' Left='12.5' Top='abc' Visible='False' BackColor='2147483663' Nonsense='1' "
        "Width='1E9' Height='-1' Caption='{AppURL}' ForeColor=''/>";
    rig.SetSkin(Window(
        "<Components>" + component +
        "<C name='nobody' Left='1'/><C name='pic'><M Name='move'>"
        "<P Type='string'>30</P><P Type='String'>45</P><P Type='string'>2147483647</P></M><M Name='refused'>" +
        "<P/><P/><P/><P/><P/><P/><P/></M></C><C name='text'/><C name='cmd' Cancel='True' Enabled='0'/></Components>" +
        Bar));
    SkinnedWindow window(rig, rig.Family);
    for (const std::int32_t index : {0, 1}) window.Add<Label>("lbl", index).Move(1, 2, 3, 4);
    window.Add<PictureBox>("pic");
    window.Add<Label>("text").SetCaption("{AppProductName}");
    const auto& button = window.Add<CommandButton>("cmd");
    window.tbSkin1.DressWindow();
    EXPECT_FALSE(button.Enabled());
    EXPECT_FALSE(button.GetProperty("Cancel").AsBoolean()) << "Escape closes the window";
    for (const std::int32_t index : {0, 1}) {
        const Label& label = window.The<Label>("lbl", index);
        EXPECT_EQ(label.Bounds(), (TwipRect{12, 2, 19200, 4})) << "no wider than the screen";
        EXPECT_FALSE(label.Visible());
        EXPECT_EQ(label.BackColor(), SystemColors::ButtonFace);
        EXPECT_EQ(label.Caption(), "http://h/");
    }
    EXPECT_EQ(window.The<PictureBox>("pic").Bounds(), (TwipRect{30, 45, 19200, 1215}));
    EXPECT_EQ(window.The<Label>("text").Caption(), "Trawlbeam") << "tokens are expanded even so";
    EXPECT_EQ(rig.Log.Take(), std::vector<Text>{}) << "seven parameters call nothing";
    for (const char* method : {"<M Name='Skin'/>", "<M Name='Unload'/>", "<M Name='Move'/>"}) {
        rig.SetSkin(Window("<Components><C name='tbSkin1'>" + Text(method) + "</C></Components>" + Bar));
        window.tbSkin1.DressWindow();
        EXPECT_EQ(rig.Log.Take().size(), 1u) << method;
    }
}

TEST(tbSkin, BearsHostileSkins) {
    WindowRig rig;
    Text many;
    for (int count = 0; count < 300; ++count) many += "<image>" + PictureText("1000x1000 FF0000") + "</image>";
    Text steps;
    for (int count = 0; count < 3000; ++count) steps += "<C name='lbl' Left='1' Top='1' Tag='2'/>";
    rig.SetSkin(
        Window("<Caption Close='0' CaptionHeight='2147483647' CaptionFontSize='1E300' CaptionTextLeft='-2147483648' "
               "CaptionNonFocusFactor='-2147483648' CaptionBackColor='red'>" +
                   Text(20 << 20, 'A') + "</Caption><Graphics>" + many + "</Graphics><Components>" + steps +
                   "<C name='lbl' Caption='" + Text(1 << 20, 'x') + "'/></Components>",
               "Height='4294967296' Width='2147483647' FormBackColor='blue' EdgeRadius='round' Border1='-'"));
    SkinnedWindow window(rig, rig.Family);
    window.Add<Label>("lbl").SetCaption("kept");
    window.Move(-30000, 99999);
    const Color before = window.BackColor();
    window.tbSkin1.DressWindow();
    window.tbSkin1.SetCaption(Text(100000, 'x'));
    window.tbSkin1.FitWindow();
    EXPECT_EQ(window.Bounds(), (TwipRect{0, 13500, 19200, 1500})) << "on the screen, below its bar none";
    EXPECT_EQ(window.BackColor(), before);
    EXPECT_EQ(window.tbSkin1.Height(), window.Height());
    EXPECT_EQ(window.The<Label>("lbl").Caption(), "kept");
    EXPECT_EQ(window.Find("uiPic100"), nullptr) << "so many pictures and no more";
    EXPECT_NE(window.The<Image>("uiPic0").GetPicture(), nullptr);
    EXPECT_EQ(window.The<Image>("uiPic99").GetPicture(), nullptr) << "more than a few screens show";
    EXPECT_EQ(rig.Log.Take(), (std::vector<Text>{"0 frmMessage Skin: EdgeRadius is no number: round"}));
    EXPECT_EQ(rig.Calls("form1.region").substr(0, 30), "form1.region 0,0 1280,100 0, f") << "square";
    // The smallest window can be found and closed.
    rig.SetSkin(Window("", "Height='-1' Width='1'"));
    SkinnedWindow small(rig, rig.Family);
    small.tbSkin1.DressWindow();
    EXPECT_EQ(small.Bounds(), (TwipRect{300, 300, 5145, 1500}));
}

TEST(tbSkin, GivesWayToHighContrast) {
    WindowRig rig;
    rig.SetSkin(Window(Bar + "<Graphics><image>" + PictureText("10x5 FF0000") + "</image></Graphics>" +
                           "<Components><C name='lbl' ForeColor='123' Left='30'/></Components>",
                       "FormBackColor='9' Border1='10' menubg='12' Other='13'"));
    SkinnedWindow window(rig, rig.Family);
    tbSkin& skin = window.tbSkin1;
    const Label& label = window.Add<Label>("lbl");
    int told = 0;
    skin.ColorsEvent.Connect([&] { ++told; });
    const auto look = [&] {
        return std::to_string(window.BackColor().Bits()) + " " + std::to_string(label.ForeColor().Bits()) + " " +
               skin.GetSkinCollection("MenuBG", "") + " " + skin.GetSkinCollection("Other", "") + " " +
               (skin.picCaption[0]->GetPicture() ? "bar " : "") + (skin.picCaption[1]->GetPicture() ? "bar " : "") +
               (window.The<Image>("uiPic0").Visible() ? "picture" : "");
    };
    const Text skinned = "9 123 12 13 bar bar picture";
    const Text contrast = std::to_string(SystemColors::ButtonFace.Bits()) + " " +
                          std::to_string(SystemColors::ButtonText.Bits()) + " " +
                          std::to_string(SystemColors::ButtonFace.Bits()) + " 13 ";
    skin.Skin();
    EXPECT_EQ(look(), skinned);
    for (const bool isHigh : {true, false}) {
        rig.Windows.IsHighContrast = isHigh;
        rig.Windows.FormsByName["form1"]->SystemColorsChanged();
        EXPECT_EQ(look(), isHigh ? contrast : skinned);
    }
    EXPECT_EQ(told, 2);
    rig.Windows.IsHighContrast = true;
    SkinnedWindow later(rig, rig.Family);
    later.tbSkin1.Skin();
    EXPECT_EQ(later.BackColor(), SystemColors::ButtonFace);
    EXPECT_EQ(later.tbSkin1.picCaption[1]->BackColor(), SystemColors::InactiveCaption);
    EXPECT_FALSE(later.The<Image>("uiPic0").Visible());
}

TEST(tbSkin, FitsAWindowThatTakesItsSizeLater) {
    WindowRig rig;
    rig.SetSkin(Window(Bar));
    SkinnedWindow window(rig, rig.Family);
    window.tbSkin1.Skin();
    rig.Windows.Take();
    window.Move(300, 300, 6000, 3000);
    window.tbSkin1.FitWindow();
    EXPECT_EQ(window.tbSkin1.Width(), 395 * 15);
    EXPECT_EQ(window.tbSkin1.ucX1.Left(), (395 - 16 - 8) * 15);
    EXPECT_EQ(window.tbSkin1.picCaption[1]->Width(), 395 * 15);
    EXPECT_EQ(window.tbSkin1.lineTop[0]->To().X, 395 * 15);
    EXPECT_EQ(rig.Calls("form1.region"), "form1.region 0,0 400,200 5");
    EXPECT_EQ(rig.Calls("form1.clear"), "form1.clear") << "the old border is gone";
}

TEST(tbSkin, DrawsARoundFrame) {
    WindowRig rig;
    SkinnedWindow window(rig, rig.Family);
    rig.Windows.Take();
    window.tbSkin1.RoundFrame(10, 20, 110, 80, 1, 2, 8);
    EXPECT_EQ(rig.Windows.Take(),
              "form1.round 11,21 111,81 8 2, form1.round 10,20 110,80 8 1, "
              "form1.line 11,24 11,76 2, form1.line 14,21 106,21 2");
}

TEST(ucX, FollowsTheMouse) {
    WindowRig rig;
    SkinnedWindow window(rig, rig.Family);
    auto& box = window.Add<ucX>("box");
    const Text made = rig.Windows.Calls.back();
    PointerEvents* const mouse = rig.Windows.Pointers.at(made.substr(0, made.rfind('.')));
    auto& ground = window.Add<PictureBox>("ground");
    ground.Move(150, 150, 3000, 300);
    ground.SetBackColor(0x111111);
    box.Move(300, 150);
    const auto picture = [](Color color) {
        const auto pixel = static_cast<std::uint32_t>(color.Red() << 16) | 0xFF000000U;
        // The right half is clear.
        return std::make_shared<Picture>(Picture{"", PictureKind::Gif, {2, 1}, {pixel, 0}});
    };
    box.Setup(picture(1), picture(2), picture(3), picture(4));
    box.SetGround(&ground);
    EXPECT_EQ(box.Width(), 30);
    int clicks = 0;
    box.ClickEvent.Connect([&] { ++clicks; });
    const auto move = [&](Twips x) { mouse->Moved({x, 0}); };
    const auto press = [&](MouseButton button) { mouse->Pressed(button, {0, 0}); };
    const auto release = [&](MouseButton button) { mouse->Released(button, {0, 0}); };
    EXPECT_EQ(box.Surface()->GetPixel({1, 0}), Color(0x111111)) << "the bar beneath";
    const struct {
        std::function<void()> Act;
        int Shown;
        int Clicks;
        const char* Capture;
    } steps[] = {{[&] { box.InActive(); }, 4, 0, ""},
                 {[&] { box.Active(); }, 1, 0, ""},
                 {[&] { move(0); }, 3, 0, ".capture"},
                 {[&] { press(MouseButton::Left); }, 2, 0, ""},
                 {[&] { move(30); }, 1, 0, ".release"},
                 {[&] { move(29), release(MouseButton::Left); }, 1, 0, ".capture.release"},
                 {[&] { move(0), press(MouseButton::Right), release(MouseButton::Right); }, 3, 0, ".capture"},
                 {[&] { press(MouseButton::Left), mouse->CaptureLost(); }, 1, 0, ".release"},
                 {[&] { press(MouseButton::Left), release(MouseButton::Left); }, 1, 1, ".release"}};
    for (const auto& step : steps) {
        rig.Windows.Take();
        step.Act();
        Text captures;
        for (const Text& call : rig.Windows.Calls) {
            const Text what = call.substr(call.rfind('.'));
            if (what == ".capture" || what == ".release") captures += what;
        }
        EXPECT_EQ(captures, step.Capture) << &step - steps;
        EXPECT_EQ(box.Surface()->GetPixel({0, 0}), Color(step.Shown)) << &step - steps;
        EXPECT_EQ(clicks, step.Clicks) << &step - steps;
    }
}

}  // namespace
}  // namespace tb
