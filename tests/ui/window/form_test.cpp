#include <gtest/gtest.h>

#include "fakes/FakeWindowSystem.h"
#include "fakes/Raised.h"
#include "ui/window/CommandButton.h"
#include "ui/window/Form.h"
#include "ui/window/Menu.h"
#include "ui/window/OptionButton.h"
#include "ui/window/PictureBox.h"
#include "ui/window/TextBox.h"
#include "ui/window/Timer.h"

namespace tb {
namespace {

// A form whose events are written down.
class Noted : public Form {
public:
    explicit Noted(Forms& forms) : Form(forms, "frmNoted") {
        LoadEvent.Connect([this] { Events += "load "; });
        ResizeEvent.Connect([this] { Events += "resize "; });
        QueryUnloadEvent.Connect([this](bool& cancel, UnloadMode mode) {
            Events += "query" + std::to_string(static_cast<int>(mode)) + " ";
            cancel = Keep;
        });
        UnloadEvent.Connect([this](bool&) { Events += "unload "; });
    }

    Text Take() { return std::exchange(Events, {}); }

    Text Events;
    bool Keep = false;
};

class FormTest : public ::testing::Test {
protected:
    // What a test plays the user through.
    FormEvents& Window() { return *m_System.FormsByName.at("form1"); }

    FakeWindowSystem m_System;
    Forms m_Forms{&m_System};
};

TEST_F(FormTest, TheWindowGetsEverythingThatWasSetBefore) {
    Noted form(m_Forms);
    form.SetCaption("Title");
    form.SetBorderStyle(1);
    form.SetTopMost(true);
    form.Move(150, 300, 3000, 1500);
    TextBox& box = form.Add<TextBox>("txt");
    box.SetMultiLine(true);
    box.SetLocked(true);
    box.SetText("lines");
    Timer& timer = form.Add<Timer>("tm");
    timer.SetInterval(1000);
    form.Add<CommandButton>("cmd").SetCancel(true);
    int ticks = 0;
    timer.TimerEvent.Connect([&] { ++ticks; });
    form.Load();
    EXPECT_TRUE(m_System.Take().starts_with(
        "form1.border 1, form1.text Title, form1.own icon, form1.state 0, form1.top-most, "
        "form1.bounds 150 300 3000 1500, form1.colors -2147483633 -2147483630, form1.enable, form1.box1.lines, "
        "form1.box1.bounds 0 0 1215 495, form1.box1.colors -2147483643 -2147483640, form1.box1.enable, "
        "form1.box1.text lines, form1.box1.lock, form1.box1.show, form1.timer1.stop, form1.button1."));
    form.Add<OptionButton>("opt", NoIndex, &form.Add<PictureBox>("pic")).SetCaption("later");
    form.SetWindowState(2);
    for (const std::int32_t interval : {1000, 0}) {
        timer.Tick();
        timer.SetEnabled(true);
        timer.SetInterval(interval);
    }
    timer.Tick();
    EXPECT_EQ(ticks, 1) << "only while it runs";
    EXPECT_TRUE(
        m_System.Take().ends_with("form1.area2.option3.text later, form1.state 2, form1.timer1.start 1000, "
                                  "form1.timer1.start 1000, form1.timer1.stop"));
    box.SetSelStart(0);
    box.SetMultiLine(true);
    EXPECT_EQ(Raised([&] { box.SetMultiLine(false); }), 382);
    form.Unload();
    EXPECT_EQ(m_System.Live, 0);
    EXPECT_TRUE(m_System.Take().ends_with("form1.button1.gone, form1.box1.gone, form1.gone")) << "children first";
}

TEST_F(FormTest, TheUserMovesAndSizesIt) {
    Noted form(m_Forms);
    form.Show();
    form.Take();
    m_System.Take();
    Window().WindowPlaced(WindowStates::Normal, {30, 45, 4800, 3600});
    EXPECT_EQ(form.Take(), "") << "moved only";
    EXPECT_EQ(form.Left(), 30);
    Window().WindowPlaced(WindowStates::Maximized, {0, 0, 19200, 15360});
    Window().WindowPlaced(WindowStates::Minimized, {-32000, -32000, 100, 20});
    EXPECT_EQ(form.Take(), "resize resize ");
    EXPECT_EQ(form.WindowState(), 1);
    EXPECT_EQ(form.Width(), 19200);
    EXPECT_EQ(m_System.Take(), "") << "the window knows";
    form.SetWindowState(0);
    EXPECT_EQ(form.Take(), "resize ");
    EXPECT_EQ(m_System.Take(), "form1.state 0");
}

TEST_F(FormTest, WhoClosesItIsTold) {
    Noted form(m_Forms);
    form.Load();
    form.Keep = true;
    EXPECT_FALSE(form.Unload());
    Window().CloseAsked();
    EXPECT_FALSE(Window().SessionEnding());
    EXPECT_EQ(form.Take(), "load query1 query0 query2 ");
    form.Keep = false;
    EXPECT_TRUE(Window().SessionEnding());
    EXPECT_TRUE(form.IsLoaded()) << "another program may still forbid it";
    Window().SessionEnds();
    EXPECT_EQ(form.Take(), "query2 unload ");
    EXPECT_EQ(m_System.Live, 0);
}

// As long as a handler asks the user, messages are served.
TEST_F(FormTest, TheSessionMayEndWhileTheFormAsks) {
    for (const bool answer : {true, false}) {
        Noted form(m_Forms);
        form.Load();
        form.Keep = answer;
        form.QueryUnloadEvent.Connect([&](bool&, UnloadMode) {
            FormEvents& window = *m_System.FormsByName.begin()->second;
            EXPECT_TRUE(window.SessionEnding());
            window.SessionEnds();
        });
        EXPECT_TRUE(form.Unload());
        EXPECT_EQ(form.Take(), "load query1 unload ") << "saved once, whatever the answer is";
    }
}

TEST_F(FormTest, ASharedFormMayBeDroppedInsideItsOwnEvents) {
    auto form = std::make_shared<Noted>(m_Forms);
    Timer& timer = form->Add<Timer>("tm");
    timer.SetInterval(1000);
    timer.SetEnabled(true);
    int after = 0;
    timer.TimerEvent.Connect([&] {
        form->Unload();
        form.reset();
    });
    timer.TimerEvent.Connect([&] { ++after; });
    form->Load();
    // As a window procedure does it.
    TimerEvents* const events = m_System.Timers.at("form1.timer1");
    auto alive = events->KeepAlive();
    events->Tick();
    alive.reset();
    EXPECT_EQ(after, 1);
    EXPECT_EQ(m_System.Live, 0);
    EXPECT_TRUE(m_Forms.Loaded().empty());
}

// Windows that were visible take no input until the modal one has gone, however many are open.
TEST_F(FormTest, AModalFormBlocksTheOthers) {
    Form form(m_Forms, "frmFirst"), modal(m_Forms, "frmModal"), inner(m_Forms, "frmInner"),
        hidden(m_Forms, "frmHidden");
    form.Show();
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
        inner.ShowModal();
        EXPECT_TRUE(modal.Visible());
        modal.Unload();
        EXPECT_EQ(input(), "form1.enable ");
    };
    modal.ShowModal();
    EXPECT_EQ(waits, 2);
    EXPECT_EQ(input(), "");
}

TEST_F(FormTest, AMenuShowsItsVisibleItemsAndTheChosenOneIsClicked) {
    Noted form(m_Forms);
    Menu& head = form.Add<Menu>("mnuPopup");
    Menu& first = form.Add<Menu>("mnu", 0, &head);
    Menu& line = form.Add<Menu>("mnu", 1, &head);
    form.Add<Menu>("mnu", 2, &head).SetVisible(false);
    Menu& more = form.Add<Menu>("mnu", 3, &head);
    Menu& inner = form.Add<Menu>("mnuInner", NoIndex, &more);
    line.SetCaption("-");
    more.SetEnabled(false);
    inner.SetChecked(true);
    int clicks = 0;
    inner.ClickEvent.Connect([&] { ++clicks; });
    form.PopupMenu(head);
    EXPECT_TRUE(m_System.MenuRows.empty()) << "not loaded";
    form.Load();
    m_System.MenuAnswer = 4;
    m_System.WhileMenuIsOpen = [&] { form.PopupMenu(head); };
    m_System.Take();
    form.PopupMenu(head, 2, &first);
    EXPECT_EQ(m_System.Take(), "form1.menu 2") << "one menu at a time";
    EXPECT_EQ(clicks, 1);
    ASSERT_EQ(m_System.MenuRows.size(), 3U);
    EXPECT_TRUE(m_System.MenuRows[0].IsDefault && m_System.MenuRows[1].IsSeparator);
    EXPECT_FALSE(m_System.MenuRows[2].IsEnabled);
    EXPECT_TRUE(m_System.MenuRows[2].Rows.at(0).IsChecked);
    m_System.MenuAnswer = 0;
    m_System.WhileMenuIsOpen = [&] { form.Unload(); };
    form.PopupMenu(head);
    EXPECT_EQ(clicks, 1);
    EXPECT_FALSE(form.IsLoaded());
}

}  // namespace
}  // namespace tb
