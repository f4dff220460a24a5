// A skin document, as the program's own and as the one that comes with the defaults: whatever it says, each window is
// dressed without an exception, stays on the screen, takes input and can be closed.
#include <cstdlib>

#include "components/tbXML/Document.h"
#include "components/tbXML/XmlParser.h"
#include "fakes/FakePlatform.h"
#include "fakes/RecordedLog.h"
#include "submissions/forms/frmSubCat.h"
#include "ui/dialogs/frmMessage.h"
#include "ui/settings/xmlINI.h"
#include "ui/skin/tbSkin.h"
#include "ui/window/CommandButton.h"
#include "ui/window/Image.h"
#include "ui/window/Label.h"
#include "ui/window/OptionButton.h"
#include "ui/window/TextBox.h"

namespace {

constexpr const char* Names[] = {"frmTrawlMain", "frmMessage",   "frmSplash",    "frmAbout",
                                 "frmSubCat",    "frmTrawlDrop", "frmNotifyURL", "frmNotify"};

// Knows every window, so that a skin of the defaults counts for each.
tb::Text OwnSkin() {
    tb::Text text = "<Skin URL='http://h/'>";
    for (const char* name : Names) {
        text +=
            "<W Name='" + tb::Text(name) + "' Height='3000' Width='4500'><Caption CaptionHeight='420' Close='1'/></W>";
    }
    return text + "</Skin>";
}

// One of each kind of control that windows are made of.
struct Window : tb::Form {
    Window(tb::Forms& forms, const char* name, const tb::App& app, tb::LogSink& log)
        : Form(forms, name), tbSkin1(AddWith<tb::tbSkin>("tbSkin1", app, log)) {
        auto& box = Add<tb::PictureBox>("pic");
        Add<tb::Label>("lbl").SetCaption("{AppProductName}");
        for (const int index : {0, 1}) {
            Add<tb::OptionButton>("opt", index, &box);
            Add<tb::CommandButton>("cmd", index);
        }
        Add<tb::TextBox>("txt");
        Add<tb::Image>("img");
        Add<tb::Line>("line");
        Add<tb::Timer>("tmr");
        Add<tb::ucX>("ucX1");
        Add<tb::Label>("uiPic1");
        Load();
        Move(-99999, 99999);
    }
    tb::tbSkin& tbSkin1;
};

bool IsOnScreen(const tb::Form& window, const tb::TwipSize& screen) {
    return window.Left() >= 0 && window.Top() >= 0 && window.Left() + window.Width() <= screen.Width &&
           window.Top() + window.Height() <= screen.Height;
}

void Dress(tb::Forms& forms, const char* name, const tb::App& app) {
    tb::RecordedLog log;
    Window window(forms, name, app, log);
    // A window that has no element stays where it is.
    const bool isDressed = tb::ReadWindowSkin(app, name).Builtin != nullptr;
    // The second time, the pictures are there already.
    for (int time = 0; time < 2; ++time) window.tbSkin1.DressWindow();
    if (IsOnScreen(window, forms.ScreenSize()) != isDressed) std::abort();
    window.tbSkin1.SetCaption("Title");
    window.Move(99999, -99999, 99999, 99999);
    window.tbSkin1.FitWindow();
    window.tbSkin1.Timer1.Tick();
    window.SystemColorsEvent.Raise();
    if (IsOnScreen(window, forms.ScreenSize()) != isDressed) std::abort();
    if (!window.Enabled() || !window.Unload()) std::abort();
}

void Expect(const tb::Form& window, const tb::Forms& forms, bool isDressed) {
    if (isDressed && !IsOnScreen(window, forms.ScreenSize())) std::abort();
    if (!window.Enabled()) std::abort();
}

// The dialogs of the program, with what they do themselves once they are dressed.
void Open(tb::Forms& forms, tb::App& app) {
    tb::RecordedLog log;
    const auto isDressed = [&](const char* name) { return tb::ReadWindowSkin(app, name).Builtin != nullptr; };
    {
        const auto box = std::make_shared<tb::frmMessage>(forms, app, log);
        box->MsgBox({"A prompt", tb::MessageButtons::YesNo | tb::MessageButtons::Help, "Title", {}});
        Expect(*box, forms, isDressed("frmMessage"));
        box->Hide();
        if (!box->Unload()) std::abort();
    }
    tb::QualifiersDialog dialog(app, log);
    dialog.Setup(tb::ParseXml("<C><C ID='2' NAME='One'/><C ID='3' NAME='Two'/></C>"), "Subject", "2", "3");
    tb::frmSubCat window(forms, app, log, dialog);
    window.Show();
    Expect(window, forms, isDressed("frmSubCat"));
    if (!window.Unload(tb::UnloadMode::User)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tb::Document given;
    bool isXml = true;
    tb::Trap(
        [&] {
            given.LoadXML({reinterpret_cast<const char*>(data), size});
        },
        [&](const tb::RuntimeError&) { isXml = false; });
    if (!isXml || given.Root() == nullptr) return 0;
    tb::FakeSystem system;
    tb::App app(system, tb::TestDeployment());
    tb::Forms forms;
    app.SkinRoot = given.Root();
    for (const char* name : Names) Dress(forms, name, app);
    Open(forms, app);
    tb::Document own;
    own.LoadXML(OwnSkin());
    app.SkinRoot = own.Root();
    app.Settings = std::make_shared<tb::xmlINI>(tb::xmlINI::Surroundings{
        system.Files, system.Clock, system.Dialogs, app.Product.Separators, app.Product.ProductName});
    app.Settings->SetGlobals("SKIN", given.Root());
    for (const char* name : Names) Dress(forms, name, app);
    Open(forms, app);
    return 0;
}
