// The windows of the submissions as real ones: keys, and drops from another process.
#include <fstream>

#include "platform/win32/ServedWait.h"
#include "submissions/win32/Win32ClipboardFormats.h"
#include "windows/ProgramProcess.h"
#include "windows/ScratchFolder.h"
#include "windows/SkinnedWindows.h"

namespace tb {
namespace {

class SubmissionWindowsTest : public SkinnedWindows {
protected:
    // Presses the keys in the dialog, one after the other while it is open, and gives back what it says.
    Text Press(const std::vector<WPARAM>& keys, const Text& category) {
        size_t next = 0;
        const auto press = [&](Form&) {
            // The dialog may not have it yet.
            const HWND focused = GetFocus();
            if (focused != nullptr && next < keys.size()) PostMessageA(focused, WM_KEYDOWN, keys[next++], 1);
        };
        const Text told = AskForCategory(press, category);
        EXPECT_EQ(next, keys.size());
        return told;
    }
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

    Win32ClipboardFormats formats;
    DB = std::make_shared<SubmissionDB>(SubmissionDB::Parts{{Program, Log, Web.Factory()}, formats, Qualifiers});
    const auto window = Panel();
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
