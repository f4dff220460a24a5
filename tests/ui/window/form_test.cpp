#include <gtest/gtest.h>

#include "fakes/FakeWindowSystem.h"
#include "fakes/Raised.h"
#include "ui/window/Form.h"
#include "ui/window/Menu.h"
#include "ui/window/TextBox.h"
#include "ui/window/Timer.h"

namespace tb {
namespace {

// A form whose events are written down.
class Noted : public Form {
public:
    explicit Noted(Forms& forms, const Text& name = "frmNoted") : Form(forms, name) {
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
    // The peers that a test plays the user through.
    FormEvents& Window() { return *m_System.FormsByName.at("form1"); }

    FakeWindowSystem m_System;
    Forms m_Forms{&m_System};
};

TEST(FormWithoutWindows, LivesThroughLoadAndUnload) {
    Forms forms;
    int last = 0;
    forms.LastUnloadedEvent.Connect([&] { ++last; });
    Noted form(forms);
    Noted other(forms, "frmOther");
    form.Hide();
    form.SetWidth(3000);
    EXPECT_TRUE(form.Unload());
    EXPECT_EQ(form.Take(), "") << "nothing happens to a form that is not loaded";
    form.Show();
    form.Show();
    form.SetHeight(1500);
    form.SetLeft(15);
    other.Load();
    EXPECT_EQ(form.Take(), "load resize resize ");
    EXPECT_EQ(forms.Loaded(), (std::vector<Form*>{&form, &other}));
    EXPECT_EQ(form.ScaleWidth(), 3000);

    form.Keep = true;
    EXPECT_FALSE(form.Unload());
    EXPECT_TRUE(form.IsLoaded());
    form.Keep = false;
    EXPECT_TRUE(form.Unload());
    EXPECT_EQ(form.Take(), "query1 query1 unload ");
    EXPECT_FALSE(form.Visible());
    EXPECT_EQ(last, 0);
    other.Unload();
    EXPECT_EQ(last, 1);
}

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
    EXPECT_EQ(m_System.Live, 0);
    form.Load();
    EXPECT_EQ(m_System.Take(),
              "form1.border 1, form1.text Title, form1.own icon, form1.state 0, form1.top-most, "
              "form1.bounds 150 300 3000 1500, form1.colors -2147483633 -2147483630, form1.enable, form1.box1.lines, "
              "form1.box1.bounds 0 0 1215 495, "
              "form1.box1.colors -2147483643 -2147483640, form1.box1.enable, form1.box1.text lines, form1.box1.lock, "
              "form1.box1.show, form1.timer1.stop");
    timer.SetEnabled(true);
    form.Add<TextBox>("late");
    form.Show();
    EXPECT_EQ(Raised([&] { box.SetMultiLine(false); }), 382);
    EXPECT_EQ(form.ScaleHeight(), 1100);
    EXPECT_EQ(m_System.Live, 4);
    m_System.Take();
    form.SetTopMost(false);
    EXPECT_EQ(m_System.Take(), "form1.not top-most");
    form.Unload();
    EXPECT_EQ(m_System.Live, 0);
    EXPECT_EQ(m_System.Take(), "form1.box2.gone, form1.box1.gone, form1.gone") << "children first";
    EXPECT_EQ(box.GetText(), "lines");
}

TEST_F(FormTest, WithoutADesktopTheFormIsNotLoaded) {
    m_System.Refuses = true;
    Noted form(m_Forms);
    EXPECT_EQ(Raised([&] { form.Show(); }), 51);
    EXPECT_FALSE(form.IsLoaded());
    EXPECT_FALSE(form.Visible());
    EXPECT_TRUE(m_Forms.Loaded().empty());
    m_System.Refuses = false;
    form.Show();
    EXPECT_EQ(form.Take(), "load resize ");
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
    EXPECT_EQ(form.Take(), "resize ");
    Window().WindowPlaced(WindowStates::Minimized, {-32000, -32000, 100, 20});
    EXPECT_EQ(form.Take(), "resize ");
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
    Window().CloseAsked();
    EXPECT_FALSE(Window().SessionEnding());
    EXPECT_EQ(form.Take(), "load query0 query2 ");
    form.Keep = false;
    EXPECT_TRUE(Window().SessionEnding());
    EXPECT_TRUE(form.IsLoaded()) << "another program may still forbid it";
    Window().SessionEnds();
    EXPECT_FALSE(form.IsLoaded());
    EXPECT_EQ(form.Take(), "query2 unload ");
    EXPECT_EQ(m_System.Live, 0);
}

TEST_F(FormTest, AFormIsNotUnloadedTwiceAtATime) {
    Noted form(m_Forms);
    form.Load();
    bool inner = true;
    form.QueryUnloadEvent.Connect([&](bool&, UnloadMode) { inner = form.Unload(); });
    EXPECT_TRUE(form.Unload());
    EXPECT_FALSE(inner);
    EXPECT_EQ(form.Take(), "load query1 unload ");
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
        EXPECT_FALSE(form.IsLoaded());
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
    {
        // As a window procedure does it.
        TimerEvents* const events = m_System.Timers.at("form1.timer1");
        const auto alive = events->KeepAlive();
        events->Tick();
    }
    EXPECT_EQ(after, 1);
    EXPECT_EQ(m_System.Live, 0);
    EXPECT_TRUE(m_Forms.Loaded().empty());
}

TEST_F(FormTest, ATextThatIsSetFromOutsideAlwaysCounts) {
    Noted form(m_Forms);
    TextBox& box = form.Add<TextBox>("txt");
    form.Load();
    std::vector<Text> seen;
    box.ChangeEvent.Connect([&] { seen.push_back(box.GetText()); });
    TextBoxEvents& events = *m_System.Boxes.at("form1.box1");
    events.TextChanged("same");
    events.TextChanged("same");
    m_System.Take();
    box.SetText("");
    EXPECT_EQ(seen, (std::vector<Text>{"same", "same", ""}));
    EXPECT_EQ(m_System.Take(), "form1.box1.text ");
}

TEST_F(FormTest, AMenuShowsItsVisibleItemsAndTheChosenOneIsClicked) {
    Noted form(m_Forms);
    Menu& head = form.Add<Menu>("mnuPopup");
    Menu& first = form.Add<Menu>("mnu", 0, &head);
    Menu& line = form.Add<Menu>("mnu", 1, &head);
    Menu& hidden = form.Add<Menu>("mnu", 2, &head);
    Menu& more = form.Add<Menu>("mnu", 3, &head);
    Menu& inner = form.Add<Menu>("mnuInner", NoIndex, &more);
    first.SetCaption("&First");
    line.SetCaption("-");
    hidden.SetVisible(false);
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
    EXPECT_EQ(m_System.MenuRows[0].Caption, "&First");
    EXPECT_TRUE(m_System.MenuRows[0].IsDefault);
    EXPECT_TRUE(m_System.MenuRows[1].IsSeparator);
    EXPECT_FALSE(m_System.MenuRows[2].IsEnabled);
    ASSERT_EQ(m_System.MenuRows[2].Rows.size(), 1U);
    EXPECT_TRUE(m_System.MenuRows[2].Rows[0].IsChecked);

    m_System.MenuAnswer = 0;
    m_System.WhileMenuIsOpen = [&] { form.Unload(); };
    form.PopupMenu(head);
    EXPECT_EQ(clicks, 1);
    EXPECT_FALSE(form.IsLoaded());
}

}  // namespace
}  // namespace tb
