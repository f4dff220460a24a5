// The windows of the program, real ones in the built skin, with the rest of the program in memory.
#pragma once

#include "windows/RealForm.h"

#include "platform/win32/Win32Files.h"
#include "submissions/SubmissionRig.h"
#include "submissions/forms/frmSubCat.h"
#include "submissions/forms/frmSubmissions.h"
#include "submissions/win32/OleSession.h"
#include "submissions/win32/Win32DropTargets.h"
#include "ui/dialogs/frmMessage.h"
#include "ui/window/Timer.h"

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

class SkinnedWindows : public RealWindows, protected SubmissionRig, protected Activities {
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
        EXPECT_EQ(Log.Lines, Lines{});
    }

    bool StartActivity(const Text&, bool) override { return true; }
    void EndActivity(const Text&, bool) override {}
    std::shared_ptr<frmSubmissions> Panel() {
        return std::make_shared<frmSubmissions>(
            m_Forms, frmSubmissions::Parts{DB, {Program, Log, Web.Factory()}, *this, m_Targets, [] {}});
    }
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

    using Deed = std::function<void(Form&)>;
    // Opens a dialog and does that with it, again and again as long as it stands there.
    void WhileOpen(const std::function<void()>& open, const Deed& act) {
        Form clock(m_Forms, "frmClock");
        auto& timer = clock.Add<Timer>("tm");
        timer.SetInterval(10);
        timer.SetEnabled(true);
        bool wasOpen = false;
        timer.TimerEvent.Connect([&] {
            Form& top = *m_Forms.Loaded().back();
            if (&top == &clock || !top.Visible()) return;
            wasOpen = true;
            act(top);
        });
        clock.Load();
        open();
        EXPECT_TRUE(wasOpen);
    }
    // That, and then no more.
    static Deed AndClose(const Deed& act) {
        return [act, begun = std::make_shared<bool>()](Form& form) {
            if (std::exchange(*begun, true)) return;
            act(form);
            form.Unload(UnloadMode::User);
        };
    }
    std::int32_t Ask(App& program, const Text& prompt, std::int32_t buttons, const Deed& act) {
        const auto box = std::make_shared<frmMessage>(m_Forms, program, Log);
        std::int32_t answer = 0;
        WhileOpen([&] { answer = box->MsgBox({prompt, buttons, "A box", {}}); }, act);
        box->Unload();
        return answer;
    }
    // What the dialog says: result, category and confidence.
    Text AskForCategory(const Deed& act, const Text& category = "2") {
        QualifiersDialog dialog(Program, Log);
        dialog.Setup(ParseXml("<C><C ID='2' NAME='Banking or Credit Card Spoof'/><C ID='3' NAME='Odd'/>"
                              "<C ID='4' NAME='Last'/></C>"),
                     "http://www.some.example/with/a/path?a & b", category, "3");
        WhileOpen([&] { m_SubCat.ShowModal(dialog, {1500, 1500}); }, act);
        return std::to_string(dialog.Result) + " " + std::to_string(dialog.CategoryID) + " " +
               std::to_string(dialog.ConfidenceID);
    }

    Text m_Document;
    OleSession m_Session;
    Win32DropTargets m_Targets{m_Failed};
    SubCatWindows m_SubCat{m_Forms, Program, Log};
    // One that takes the focus away.
    Form m_Other{m_Forms, "frmOther"};
};

}  // namespace tb
