// The program's message box as a real window, used by real keys.
#include <tuple>

#include "platform/win32/Win32Clipboard.h"
#include "platform/win32/Win32Resources.h"
#include "platform/win32/Win32Text.h"
#include "ui/dialogs/MessageFlags.h"
#include "windows/FlatMemory.h"
#include "windows/SkinnedWindows.h"

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

class RealMessageBox : public SkinnedWindows {
protected:
    RealMessageBox() { m_Program.SkinRoot = Program.SkinRoot; }

    // The answer of a box while which that happens, again and again as long as it is open and has the keyboard.
    std::int32_t Ask(std::int32_t buttons, const Text& prompt, const std::function<void(frmMessage& box)>& happens) {
        return SkinnedWindows::Ask(m_Program, prompt, buttons, [&](Form& box) {
            const HWND window = WindowOf(box);
            if (GetForegroundWindow() == window && IsChild(window, GetFocus())) happens(dynamic_cast<frmMessage&>(box));
        });
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

    struct RealSystem : FakeSystem {
        operator Platform() {
            return {Clock, Random,   Pump,     Files,   Dialogs,    Real,         Processes,
                    Shell, Versions, Registry, Machine, WindowText, RealClipboard};
        }
        Win32Resources Real;
        Win32Clipboard RealClipboard;
    };
    RealSystem m_Below;
    App m_Program{m_Below, TestDeployment()};
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

TEST_F(RealMessageBox, StandsInFrontOfItsWindowAndIsCopied) {
    m_Other.Show();
    const HWND behind = WindowOf(m_Other);
    const Text prompt = "caf\xE9 " + Text(10000, 'x') + " " + Text(10000, '\n');
    bool pressed = false;
    const auto copy = [&](frmMessage& box) {
        const HWND window = WindowOf(box);
        if (!std::exchange(pressed, true)) {
            EXPECT_EQ(GetWindow(window, GW_OWNER), behind);
            EXPECT_NE(GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_APPWINDOW, 0) << "in the task list all the same";
            EXPECT_FALSE(IsWindowEnabled(behind));
            EXPECT_TRUE(box.picIcon.GetPicture());
            Press({VK_CONTROL, 'C'});
        }
        if (TextOnTheClipboard(window) == MessageAsText("A box", prompt, {"&Yes", "&No"})) Press({0, VK_ESCAPE});
    };
    EXPECT_EQ(Ask(MessageButtons::YesNo | MessageButtons::Question, prompt, copy), AnswerNo);
    EXPECT_TRUE(IsWindowEnabled(behind));
}

TEST_F(RealMessageBox, AndOtherDialogsLeaveNothingBehind) {
    const auto no = [](frmMessage& box) { dynamic_cast<CommandButton&>(*box.Find("cmdButton", 1)).Click(); };
    const auto open = [&](int count) {
        for (; count > 0; --count) {
            EXPECT_EQ(Ask(MessageButtons::YesNo | MessageButtons::Exclamation, "?", no), AnswerNo);
            AskForCategory(AndClose([](Form&) {}));
        }
    };
    open(20);
    const std::int32_t before = HandleCount::Live();
    const FlatMemory memory(GetCurrentProcess(), "kernel32.dll");
    open(150);
    EXPECT_EQ(HandleCount::Live(), before);
    memory.Expect("150 of each");
}

}  // namespace
}  // namespace tb
