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
#include "windows/ScratchFolder.h"

namespace tb {
namespace {

constexpr const char* DialogTitle = "Assign Submission Category";

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
        return std::make_shared<frmSubmissions>(m_Forms,
                                                frmSubmissions::Parts{DB,
                                                                      {Program, Log, Web.Factory()},
                                                                      *this,
                                                                      m_Targets,
                                                                      [this](DropData& data) { DB->DoDrop(data); },
                                                                      [] {}});
    }

    // Presses the keys in the dialog, one after the other while it is open, and gives back what it says.
    Text Press(QualifiersDialog& dialog, const std::vector<WPARAM>& keys) {
        Form clock(m_Forms, "frmClock");
        Timer& timer = clock.Add<Timer>("tm");
        timer.SetInterval(10);
        timer.SetEnabled(true);
        size_t next = 0;
        timer.TimerEvent.Connect([&] {
            const HWND focused = GetFocus();
            if (next < keys.size()) PostMessageA(focused, WM_KEYDOWN, keys[next++], 1);
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
        {{VK_DOWN, VK_TAB, VK_RIGHT, VK_RETURN}, "1 3 4"},
        {{VK_TAB, VK_TAB, VK_RETURN}, "1 2 3"},
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

TEST_F(SubmissionWindowsTest, AltAndALetterPressAButton) {
    auto window = Window();
    window->Show();
    int presses = 0;
    window->cmdUpdateStatus.ClickEvent.Connect([&] { ++presses; });
    const auto press = [&](WPARAM letter) {
        constexpr LPARAM AltDown = 1 << 29;
        PostMessageA(ToHwnd(window->hWnd()), WM_SYSCHAR, letter, AltDown);
        ServeWaitingMessages();
    };
    press('x');
    EXPECT_EQ(presses, 0);
    press('u');
    EXPECT_EQ(presses, 1);
    window->Unload();
}

TEST_F(SubmissionWindowsTest, TheDialogShowsLiteralTextAboveAllOthers) {
    QualifiersDialog dialog(Program, Log);
    Setup(dialog);
    auto below = Window();
    below->Show();
    Form clock(m_Forms, "frmClock");
    Timer& timer = clock.Add<Timer>("tm");
    timer.SetInterval(20);
    timer.SetEnabled(true);
    bool seen = false;
    timer.TimerEvent.Connect([&] {
        const HWND window = FindWindowA("TestForm", DialogTitle);
        if (window == nullptr || seen) return;
        seen = true;
        EXPECT_TRUE((GetWindowLongPtrA(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0);
        EXPECT_FALSE(IsWindowEnabled(ToHwnd(below->hWnd())));
        const HWND label = GetWindow(GetWindow(window, GW_CHILD), GW_CHILD);
        char text[64] = "";
        GetWindowTextA(label, text, sizeof text);
        EXPECT_STREQ(text, "A subject & more");
        EXPECT_TRUE((GetWindowLongPtrA(label, GWL_STYLE) & SS_NOPREFIX) != 0);
        RECT client{};
        GetClientRect(window, &client);
        const HWND ok = FindWindowExA(window, nullptr, "BUTTON", "OK");
        RECT button{};
        GetWindowRect(ok, &button);
        MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&button), 2);
        EXPECT_EQ(client.bottom - button.bottom, 8) << "the window holds its buttons";
        PostMessageA(ok, BM_CLICK, 0, 0);
    });
    clock.Load();
    m_SubCat.ShowModal(dialog, {1500, 1500});
    EXPECT_EQ(dialog.Result, 1);
    EXPECT_EQ(dialog.LastTop, 1500);
    EXPECT_TRUE(IsWindowEnabled(ToHwnd(below->hWnd())));
}

class DragProcess {
public:
    explicit DragProcess(const std::wstring& arguments) {
        wchar_t file[MAX_PATH] = L"";
        GetModuleFileNameW(nullptr, file, MAX_PATH);
        const std::filesystem::path program = std::filesystem::path(file).parent_path() / "dragsource.exe";
        std::wstring line = L"\"" + program.wstring() + L"\" " + arguments;
        STARTUPINFOW start{};
        start.cb = sizeof start;
        PROCESS_INFORMATION made{};
        if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &made)) return;
        m_Process = OwnedObject(made.hProcess);
        CloseHandle(made.hThread);
    }
    DragProcess(const DragProcess&) = delete;
    DragProcess& operator=(const DragProcess&) = delete;
    ~DragProcess() { TerminateProcess(m_Process.Get(), 99); }

    // Serves messages until it ends, half a minute at most; its status.
    DWORD Wait() const {
        const ULONGLONG deadline = GetTickCount64() + 30000;
        DWORD status = STILL_ACTIVE;
        while (status == STILL_ACTIVE && GetTickCount64() < deadline) {
            ServeWaitingMessages();
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
            GetExitCodeProcess(m_Process.Get(), &status);
        }
        return status;
    }

private:
    OwnedObject m_Process;
};

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
    const std::wstring caption = L"--onto \"Trawlbeam - Submissions\" --answer ";
    const std::wstring place = L"\"" + folder.Path().wstring();

    auto window = Window();
    window->Show();
    EXPECT_EQ(DragProcess(caption + L"--text http://evil.example/a?b=1").Wait(), 0U);
    const auto file = write(L"mail.eml", mail);
    EXPECT_EQ(DragProcess(caption + L"--mail " + place + L"\\mail.eml\"").Wait(), 0U);
    EXPECT_EQ(DragProcess(caption + L"--stored " + place + L"\\one\" --stored " + place + L"\\two\"").Wait(), 0U);
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
