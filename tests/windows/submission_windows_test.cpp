// The windows of the submissions as real ones: keys, and drops from another process.
#include <windows.h>

#include <gtest/gtest.h>

#include <fstream>

#include "platform/win32/ServedWait.h"
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

class SubmissionWindowsTest : public ::testing::Test, protected SubmissionRig, protected Activities {
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

    // Presses the keys in the dialog, one after the other while it is open, and gives back what it says.
    Text Press(const std::vector<WPARAM>& keys, const Text& category) {
        QualifiersDialog dialog(Program, Log);
        dialog.Setup(ParseXml("<C><C ID='2' NAME='Bank'/><C ID='3' NAME='Odd'/><C ID='4' NAME='Last'/></C>"),
                     "A subject & more", category, "3");
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
    std::vector<Text> m_Failures;
    const std::function<void(const RuntimeError&)> m_Failed = [this](const RuntimeError& error) {
        m_Failures.push_back(error.Line());
    };
    OleSession m_Session;
    Win32WindowSystem m_System{{"TestForm", "TestBox"}, m_Failed};
    Forms m_Forms{&m_System};
    Win32ClipboardFormats m_Formats;
    Win32DropTargets m_Targets{m_Failed};
    SubCatWindows m_SubCat{m_Forms, Program, Log};
};

TEST_F(SubmissionWindowsTest, TheDialogIsUsedByKeys) {
    EXPECT_EQ(Press({VK_RETURN}, "9"), "1 0 3") << "nothing is chosen that the user has not chosen";
    EXPECT_EQ(Press({VK_UP, VK_TAB, VK_LEFT, VK_RETURN}, "2"), "1 4 2");
    EXPECT_EQ(Press({VK_TAB, VK_TAB, VK_TAB, VK_RETURN}, "2"), "0 -1 -1") << "the button that has the focus";
    EXPECT_EQ(Press({VK_TAB, VK_TAB, VK_TAB, VK_TAB, VK_TAB, VK_DOWN, VK_RETURN}, "2"), "1 3 3");
    EXPECT_EQ(Press({VK_DOWN, VK_ESCAPE}, "2"), "0 -1 -1");
}

// Serves messages until the process that drags ends; its status.
DWORD Drag(const std::wstring& items) {
    const ProgramProcess process(BuiltProgram("dragsource.exe"), L"--onto \"Trawlbeam - Submissions\" " + items);
    ServedWait(DeadlineMs, {}).For(process.Handle(), DeadlineMs);
    return process.WaitForEnd(0);
}

TEST_F(SubmissionWindowsTest, AnotherProcessDropsEveryKind) {
    const ScratchFolder folder;
    const auto write = [&](const wchar_t* name, const Text& bytes) {
        std::filesystem::create_directories((folder.Path() / name).parent_path());
        std::ofstream(folder.Path() / name, std::ios::binary) << bytes;
    };
    const Text headers = "From: a@b.example\r\nSubject: Stored & sent\r\n";
    const Text html("<b>\xE9 one</b>\r\n", 14);
    const Text rtf("LZFu\0\1\2", 7);
    const Text mail = "From: c@d.example\r\nSubject: plain\r\n\r\nBody " + Text(70000, 'x') + "\r\n";
    write(L"mail.eml", mail);
    // The headers, the text as HTML, as plain text and as RTF.
    write(L"one\\__substg1.0_007D001E", headers);
    write(L"one\\__substg1.0_1013001E", html);
    write(L"one\\__substg1.0_1000001E", "not this");
    write(L"two\\__substg1.0_007D001E", headers);
    write(L"two\\__substg1.0_10090102", rtf);
    const std::wstring place = L"\"" + folder.Path().wstring();

    DB = std::make_shared<SubmissionDB>(SubmissionDB::Parts{{Program, Log, Web.Factory()}, m_Formats, Qualifiers});
    const auto window = std::make_shared<frmSubmissions>(
        m_Forms, frmSubmissions::Parts{DB, {Program, Log, Web.Factory()}, *this, m_Targets, [] {}});
    window->Show();
    ASSERT_EQ(Drag(L"--text http://evil.example/a?b=1"), 0U);
    ASSERT_EQ(Drag(L"--mail " + place + L"\\mail.eml\""), 0U);
    ASSERT_EQ(Drag(L"--stored " + place + L"\\one\" --stored " + place + L"\\two\""), 0U);
    window->RefreshDisplay();
    EXPECT_EQ(window->lblStatus.Caption(), "Waiting: 4   Recorded: 0");
    EXPECT_EQ(File("InProcess/0.U"), " 2 , 3 ,http://evil.example/a\r\nhttp://evil.example/a?b=1");
    EXPECT_TRUE(File("InProcess/1.E").ends_with("\r\n" + mail + "\r\n"));
    EXPECT_TRUE(File("InProcess/2.E").ends_with("\r\n" + headers + "\r\n" + html + "\r\n"));
    EXPECT_TRUE(File("InProcess/3.E").ends_with("\r\n" + headers + "\r\n" + rtf + "\r\n"));
    EXPECT_EQ(TakeShown(), Lines{});
    window->Unload();
}

}  // namespace
}  // namespace tb
