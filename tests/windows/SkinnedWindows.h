// The windows of the program, real ones in the built skin, with the rest of the program in memory.
#pragma once

#include <windows.h>

// After windows.h.
#include <gtest/gtest.h>

#include "components/tbXML/XmlParser.h"
#include "platform/win32/MessageLoop.h"
#include "platform/win32/Win32Files.h"
#include "platform/win32/Win32WindowText.h"
#include "submissions/SubmissionRig.h"
#include "submissions/forms/frmSubCat.h"
#include "submissions/win32/OleSession.h"
#include "ui/dialogs/frmMessage.h"
#include "ui/window/Timer.h"
#include "ui/window/win32/Win32WindowSystem.h"
#include "windows/Eventually.h"

namespace tb {

// A window that has nothing but its skin.
struct SkinnedForm : Form {
    SkinnedForm(Forms& forms, const App& app, LogSink& log, const Text& name)
        : Form(forms, name), tbSkin1(AddWith<tbSkin>("tbSkin1", app, log)) {
        LoadEvent.Connect([this] { tbSkin1.DressWindow(); });
        Move(1500, 1500, 4500, 1500);
    }
    tbSkin& tbSkin1;
};

class SkinnedWindows : public ::testing::Test, protected SubmissionRig {
protected:
    SkinnedWindows() {
        Win32Files disk;
        m_Document = ReadWholeFile(disk, TRAWLBEAM_SKIN);
        Program.SkinRoot = ParseXml(m_Document);
        // On no window.
        SetCursorPos(2, 2);
        m_Other.SetBorderStyle(0);
        m_Other.Move(12000, 12000, 1500, 750);
    }
    ~SkinnedWindows() override {
        m_Other.Unload();
        EXPECT_EQ(m_Failures, Lines{});
        EXPECT_EQ(Log.Lines, Lines{});
        EXPECT_EQ(OwnedWindow::Live(), 0);
    }

    template <typename Condition>
    static bool Served(Condition done) {
        return Eventually([&] {
            ServeWaitingMessages();
            return done();
        });
    }
    static HWND WindowOf(const Form& form) { return ToHwnd(form.hWnd()); }
    std::int32_t Pixels(Twips twips) const { return m_System.Scale().ToPixels(twips); }
    std::shared_ptr<SkinnedForm> Made(const char* name) {
        return std::make_shared<SkinnedForm>(m_Forms, Program, Log, name);
    }
    // Shows it as the active window.
    void Show(Form& form) const {
        form.Show();
        ASSERT_TRUE(Served([&] {
            PutBack(form);
            if (!form.IsForeground()) form.SetForeground();
            return form.IsForeground();
        }));
    }
    // Where there is a window manager, a new window may be told the place that it had before the manager moved it.
    static void PutBack(Form& form) {
        RECT place{};
        GetWindowRect(WindowOf(form), &place);
        if (place.left == 0 && place.top == 0) form.Move(1500, 1500);
    }

    // Opens a dialog, does that with it as soon as it stands there, and closes it.
    void WhileOpen(const std::function<void()>& open, const std::function<void(Form&)>& act) {
        Form clock(m_Forms, "frmClock");
        auto& timer = clock.Add<Timer>("tm");
        timer.SetInterval(10);
        timer.SetEnabled(true);
        timer.TimerEvent.Connect([&] {
            Form& top = *m_Forms.Loaded().back();
            if (&top == &clock || !top.Visible()) return;
            timer.SetEnabled(false);
            act(top);
            top.Unload(UnloadMode::User);
        });
        clock.Load();
        open();
        EXPECT_FALSE(timer.Enabled()) << "nothing was opened";
    }
    void Ask(const Text& prompt, std::int32_t buttons, const std::function<void(Form&)>& act) {
        const auto box = std::make_shared<frmMessage>(m_Forms, Program, Log);
        WhileOpen([&] { box->MsgBox({prompt, buttons, "Trawlbeam", {}}); }, act);
        box->Unload();
    }
    void AskForCategory(const std::function<void(Form&)>& act) {
        QualifiersDialog dialog(Program, Log);
        dialog.Setup(ParseXml("<C><C ID='2' NAME='Banking or Credit Card Spoof'/><C ID='3' NAME='Odd'/></C>"),
                     "http://www.some.example/with/a/path", "2", "3");
        SubCatWindows windows(m_Forms, Program, Log);
        WhileOpen([&] { windows.ShowModal(dialog, {1500, 1500}); }, act);
    }

    Text m_Document;
    Lines m_Failures;
    const std::function<void(const RuntimeError&)> m_Failed = [this](const RuntimeError& error) {
        m_Failures.push_back(error.Line());
    };
    OleSession m_Session;
    Win32WindowSystem m_System{{"TestForm", "TestBox"}, m_Failed};
    Forms m_Forms{&m_System};
    // One that takes the focus away.
    Form m_Other{m_Forms, "frmOther"};
};

}  // namespace tb
