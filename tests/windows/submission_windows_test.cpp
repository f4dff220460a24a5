// The windows of the submissions as real ones: keys, and drops from another process.
#include <windows.h>

#include <gtest/gtest.h>

#include <fstream>

#include "platform/win32/MessageLoop.h"
#include "platform/win32/Win32WindowText.h"
#include "submissions/SubmissionRig.h"
#include "submissions/forms/frmSubCat.h"
#include "submissions/forms/frmSubmissions.h"
#include "submissions/win32/OleSession.h"
#include "submissions/win32/Win32ClipboardFormats.h"
#include "submissions/win32/Win32DropTargets.h"
#include "ui/window/Timer.h"
#include "ui/window/win32/Win32WindowSystem.h"
#include "windows/ProgramProcess.h"
#include "windows/ScratchFolder.h"

namespace tb {
namespace {

class SubmissionWindowsTest : public ::testing::Test, protected SubmissionRig, private Activities {
protected:
    SubmissionWindowsTest() {
        DB = std::make_shared<SubmissionDB>(SubmissionDB::Parts{{Program, Log, Web.Factory()}, m_Formats, m_SubCat});
        DB->Setup();
    }
    ~SubmissionWindowsTest() override {
        EXPECT_TRUE(m_Failures.empty());
        EXPECT_EQ(OwnedWindow::Live(), 0);
    }

    bool StartActivity(const Text&, bool) override { return true; }
    void EndActivity(const Text&, bool) override {}

    std::shared_ptr<frmSubmissions> Window() {
        return std::make_shared<frmSubmissions>(
            m_Forms, frmSubmissions::Parts{DB, {Program, Log, Web.Factory()}, *this, m_Targets, [] {}});
    }

    // Presses the keys in the dialog, one after the other while it is open, and gives back what it says.
    Text Press(QualifiersDialog& dialog, const std::vector<WPARAM>& keys) {
        Form clock(m_Forms, "frmClock");
        Timer& timer = clock.Add<Timer>("tm");
        timer.SetInterval(10);
        timer.SetEnabled(true);
        size_t next = 0;
        timer.TimerEvent.Connect([&] {
            // The dialog may not have it yet.
            const HWND focused = GetFocus();
            if (focused != nullptr && next < keys.size()) PostMessageA(focused, WM_KEYDOWN, keys[next++], 1);
        });
        clock.Load();
        m_SubCat.ShowModal(dialog, {1500, 1500});
        EXPECT_EQ(next, keys.size());
        return std::to_string(dialog.Result) + " " + std::to_string(dialog.CategoryID) + " " +
               std::to_string(dialog.ConfidenceID);
    }
    void Setup(QualifiersDialog& dialog, const Text& category = "2") {
        dialog.Setup(ParseXml("<C><C ID='2' NAME='Bank'/><C ID='3' NAME='Odd' DESC='Tip'/><C ID='4' NAME='Last'/></C>"),
                     "A subject & more", category, "3");
    }

    std::vector<Text> m_Failures;
    const std::function<void(const RuntimeError&)> m_Failed = [this](const RuntimeError& error) {
        m_Failures.push_back(error.Line());
    };
    OleSession m_Session;
    Win32WindowSystem m_System{{"TestForm", "TestBox"}, m_Failed};
    Forms m_Forms{&m_System};
    Win32ClipboardFormats m_Formats;
    Win32DropTargets m_Targets{m_Failed};
    SubCatWindows m_SubCat{m_Forms, Program};
};

TEST_F(SubmissionWindowsTest, TheDialogIsUsedByKeys) {
    const struct {
        std::vector<WPARAM> Keys;
        Text Said;
    } cases[] = {
        {{VK_RETURN}, "1 2 3"},
        {{VK_DOWN, VK_RETURN}, "1 3 3"},
        {{VK_UP, VK_RETURN}, "1 4 3"},
        {{VK_TAB, VK_LEFT, VK_RETURN}, "1 2 2"},
        {{VK_TAB, VK_TAB, VK_TAB, VK_RETURN}, "0 -1 -1"},
        {{VK_TAB, VK_TAB, VK_TAB, VK_TAB, VK_TAB, VK_DOWN, VK_RETURN}, "1 3 3"},
        {{VK_DOWN, VK_ESCAPE}, "0 -1 -1"},
    };
    for (const auto& one : cases) {
        QualifiersDialog dialog(Program, Log);
        Setup(dialog);
        EXPECT_EQ(Press(dialog, one.Keys), one.Said) << one.Keys.size() << " keys";
    }
    QualifiersDialog dialog(Program, Log);
    Setup(dialog, "9");
    EXPECT_EQ(Press(dialog, {VK_RETURN}), "1 0 3") << "nothing is chosen that the user has not chosen";
}

// Serves messages until the process that drags ends; its status.
DWORD Drag(const std::wstring& arguments) {
    const ProgramProcess process(BuiltProgram("dragsource.exe"), arguments);
    const ULONGLONG deadline = GetTickCount64() + DeadlineMs;
    while (process.WaitForEnd(0) == STILL_ACTIVE && GetTickCount64() < deadline) {
        ServeWaitingMessages();
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
    }
    return process.WaitForEnd(0);
}

TEST_F(SubmissionWindowsTest, AnotherProcessDropsEveryKind) {
    const ScratchFolder folder;
    const auto write = [&](const wchar_t* name, const Text& bytes) {
        std::ofstream(folder.Path() / name, std::ios::binary) << bytes;
        return folder.Path() / name;
    };
    const Text headers = "From: a@b.example\r\nSubject: Stored & sent\r\n";
    const Text html("<b>\xE9 one</b>\r\n", 14);
    const Text mail = "From: c@d.example\r\nSubject: plain\r\n\r\nBody " + Text(70000, 'x') + "\r\n";
    std::filesystem::create_directory(folder.Path() / L"one");
    write(L"one\\headers", headers);
    write(L"one\\html", html);
    write(L"one\\plain", "not this");
    std::filesystem::create_directory(folder.Path() / L"two");
    write(L"two\\headers", headers);
    write(L"two\\rtf", Text("LZFu\0\1\2", 7));
    const std::wstring caption = L"--onto \"Trawlbeam - Submissions\" ";
    const std::wstring place = L"\"" + folder.Path().wstring();

    DB = std::make_shared<SubmissionDB>(SubmissionDB::Parts{{Program, Log, Web.Factory()}, m_Formats, Qualifiers});
    auto window = Window();
    window->Show();
    ASSERT_EQ(Drag(caption + L"--text http://evil.example/a?b=1"), 0U);
    const auto file = write(L"mail.eml", mail);
    ASSERT_EQ(Drag(caption + L"--mail " + place + L"\\mail.eml\""), 0U);
    ASSERT_EQ(Drag(caption + L"--stored " + place + L"\\one\" --stored " + place + L"\\two\""), 0U);
    window->RefreshDisplay();
    EXPECT_EQ(window->lblStatus.Caption(), "Waiting: 4   Recorded: 0");
    EXPECT_EQ(File("InProcess/0.U"), " 2 , 3 ,http://evil.example/a\r\nhttp://evil.example/a?b=1");
    const auto queued = [&](const Text& name) {
        const Text content = File("InProcess/" + name);
        return content.substr(content.find("\r\n") + 2);
    };
    EXPECT_EQ(queued("1.E"), mail + "\r\n");
    EXPECT_EQ(queued("2.E"), headers + "\r\n" + html + "\r\n");
    EXPECT_EQ(queued("3.E"), headers + "\r\n" + Text("LZFu\0\1\2", 7) + "\r\n");
    EXPECT_EQ(TakeShown(), Lines{});
    window->Unload();
}

}  // namespace
}  // namespace tb
