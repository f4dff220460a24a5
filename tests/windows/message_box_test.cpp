// The program's message box as a real window, used by real keys.
#include <windows.h>

#include <gtest/gtest.h>

#include <tuple>

#include "components/tbXML/Document.h"
#include "fakes/FakePlatform.h"
#include "fakes/RecordedLog.h"
#include "platform/win32/Win32Clipboard.h"
#include "platform/win32/Win32Resources.h"
#include "platform/win32/Win32Text.h"
#include "platform/win32/Win32WindowText.h"
#include "ui/dialogs/MessageFlags.h"
#include "ui/dialogs/frmMessage.h"
#include "ui/window/Timer.h"
#include "ui/window/win32/Win32WindowSystem.h"
#include "windows/FlatMemory.h"

namespace tb {
namespace {

// A key, pressed together with another one that is not 0.
struct Keys {
    BYTE With;
    BYTE Key;
};

void Press(const Keys& keys) {
    if (keys.With != 0) keybd_event(keys.With, 0, 0, 0);
    for (const DWORD how : {DWORD{0}, DWORD{KEYEVENTF_KEYUP}}) keybd_event(keys.Key, 0, how, 0);
    if (keys.With != 0) keybd_event(keys.With, 0, KEYEVENTF_KEYUP, 0);
}

class RealMessageBox : public ::testing::Test {
protected:
    RealMessageBox() {
        Document skin;
        skin.LoadXML(
            "<S Border1='255' EdgeRadius='8'><W Name='frmMessage' FormBackColor='16777215'>"
            "<Caption CaptionHeight='420'/></W></S>");
        m_Program.SkinRoot = skin.Root();
        m_Behind.Load();
    }
    ~RealMessageBox() override {
        m_Behind.Unload();
        EXPECT_EQ(m_Failures, std::vector<Text>());
    }

    // The answer of a box while which that happens, again and again as long as it is open and has the keyboard.
    std::int32_t Ask(std::int32_t buttons, const Text& prompt, const std::function<void(frmMessage& box)>& happens) {
        const auto box = std::make_shared<frmMessage>(m_Forms, m_Program, m_Log);
        Timer& timer = m_Behind.Add<Timer>("tmUser");
        timer.SetInterval(10);
        timer.SetEnabled(true);
        timer.TimerEvent.Connect([&] {
            const HWND window = ToHwnd(box->hWnd());
            if (window != nullptr && GetForegroundWindow() == window && IsChild(window, GetFocus())) happens(*box);
        });
        const std::int32_t answer = box->MsgBox({prompt, buttons, "A box", {}, 0});
        m_Behind.Remove(timer);
        box->Unload();
        return answer;
    }
    // The same, pressing keys one after the other.
    std::int32_t Ask(std::int32_t buttons, const std::vector<Keys>& keys) {
        size_t next = 0;
        // Of the button that has the focus, before the key that is due: a key is due when the last one was heard.
        HWND before = nullptr;
        const std::int32_t answer = Ask(buttons, "Do it?", [&](frmMessage&) {
            if (next == keys.size() || GetFocus() == before) return;
            before = GetFocus();
            Press(keys[next++]);
        });
        EXPECT_EQ(next, keys.size());
        return answer;
    }

    struct System : FakeSystem {
        operator Platform() {
            return {Clock, Random,   Pump,     Files,   Dialogs,    Real,         Processes,
                    Shell, Versions, Registry, Machine, WindowText, RealClipboard};
        }
        Win32Resources Real;
        Win32Clipboard RealClipboard;
    };
    System m_Below;
    App m_Program{m_Below, TestDeployment()};
    RecordedLog m_Log;
    std::vector<Text> m_Failures;
    Win32WindowSystem m_System{{"TestForm", "TestBox"},
                               [this](const RuntimeError& error) { m_Failures.push_back(error.Line()); }};
    Forms m_Forms{&m_System};
    Form m_Behind{m_Forms, "frmBehind"};
};

TEST_F(RealMessageBox, IsUsedByKeys) {
    constexpr Keys Enter{0, VK_RETURN};
    constexpr Keys Space{0, VK_SPACE};
    constexpr Keys Tab{0, VK_TAB};
    constexpr Keys Escape{0, VK_ESCAPE};
    constexpr std::int32_t Three = MessageButtons::YesNoCancel;
    const std::tuple<std::int32_t, std::vector<Keys>, std::int32_t> cases[] = {
        {Three, {Enter}, AnswerYes},
        {Three, {Tab, Enter}, AnswerNo},
        {Three, {Tab, Tab, Space}, AnswerCancel},
        {Three | MessageButtons::Default2, {Space}, AnswerNo},
        {Three, {{VK_MENU, 'N'}}, AnswerNo},
        {Three, {Escape}, AnswerCancel},
        {MessageButtons::YesNo, {Escape}, AnswerNo},
        {MessageButtons::Plain, {Escape}, AnswerOK},
        {MessageButtons::AbortRetryIgnore, {{VK_MENU, VK_F4}}, AnswerIgnore},
    };
    for (const auto& [buttons, keys, answer] : cases) EXPECT_EQ(Ask(buttons, keys), answer) << keys[0].Key;
}

Text TextOnTheClipboard(HWND owner) {
    if (!OpenClipboard(owner)) return "(in use)";
    const HANDLE data = GetClipboardData(CF_UNICODETEXT);
    const auto* const text = static_cast<const wchar_t*>(data != nullptr ? GlobalLock(data) : nullptr);
    const Text found = text != nullptr ? FromSystem(text) : Text();
    if (data != nullptr) GlobalUnlock(data);
    CloseClipboard();
    return found;
}

TEST_F(RealMessageBox, HoldsALongMessageOnTheScreenInFrontOfItsWindow) {
    m_Behind.SetCaption("Behind");
    m_Behind.Show();
    const Text prompt = "caf\xE9 " + Text(10000, 'x') + " " + Text(10000, '\n');
    bool pressed = false;
    EXPECT_EQ(Ask(MessageButtons::YesNo | MessageButtons::Question, prompt,
                  [&](frmMessage& box) {
                      const HWND window = ToHwnd(box.hWnd());
                      if (!pressed) {
                          pressed = true;
                          RECT screen{};
                          SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
                          RECT place{};
                          GetWindowRect(window, &place);
                          EXPECT_GE(place.top, screen.top);
                          EXPECT_LE(place.bottom, screen.bottom);
                          RECT button{};
                          const HWND no = FindBoxButton(GetCurrentProcessId(), "A box", "No");
                          GetWindowRect(no, &button);
                          EXPECT_TRUE(PtInRect(&place, {button.left, button.top}) &&
                                      PtInRect(&place, {button.right, button.bottom}));
                          EXPECT_EQ(
                              WindowFromPoint({(button.left + button.right) / 2, (button.top + button.bottom) / 2}),
                              no);
                          EXPECT_EQ(GetWindow(window, GW_OWNER), ToHwnd(m_Behind.hWnd()));
                          EXPECT_NE(GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_APPWINDOW, 0)
                              << "in the task list all the same";
                          EXPECT_FALSE(IsWindowEnabled(ToHwnd(m_Behind.hWnd())));
                          EXPECT_TRUE(box.picIcon.GetPicture());
                          Press({VK_CONTROL, 'C'});
                      }
                      if (TextOnTheClipboard(window) == MessageAsText("A box", prompt, {"&Yes", "&No"}))
                          Press({0, VK_ESCAPE});
                  }),
              AnswerNo);
    EXPECT_TRUE(IsWindowEnabled(ToHwnd(m_Behind.hWnd())));
}

TEST_F(RealMessageBox, LeavesNothingBehind) {
    const auto open = [this](int count) {
        const auto no = [](frmMessage& box) { dynamic_cast<CommandButton&>(*box.Find("cmdButton", 1)).Click(); };
        for (; count > 0; --count)
            EXPECT_EQ(Ask(MessageButtons::YesNo | MessageButtons::Exclamation, "?", no), AnswerNo);
    };
    // Which the memory's measure waits for.
    ASSERT_NE(LoadLibraryW(L"dbghelp.dll"), nullptr);
    open(20);
    const std::int32_t before = HandleCount::Live();
    const FlatMemory memory(GetCurrentProcess());
    open(300);
    EXPECT_EQ(HandleCount::Live(), before);
    memory.Expect("300 boxes");
}

}  // namespace
}  // namespace tb
