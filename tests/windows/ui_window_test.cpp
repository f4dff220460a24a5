// Forms, text boxes and timers as real windows.
#include "windows/RealForm.h"

#include <gmock/gmock.h>

#include <thread>

#include "platform/win32/ServedWait.h"
#include "ui/window/TextBox.h"
#include "ui/window/Timer.h"

namespace tb {
namespace {

class UiWindowTest : public RealForm {
protected:
    HWND Child() { return GetWindow(Window(), GW_CHILD); }

    // Sets a text from another thread, as another process would, and serves this thread's windows meanwhile.
    static void SendFromOutside(HWND window, const Text& text) {
        Win32WindowText windows;
        std::thread sender([&] { windows.SendText(ToWindowHandle(window), text); });
        ServedWait(DeadlineMs, {}).For(reinterpret_cast<HANDLE>(pthread_gethandle(sender.native_handle())), DeadlineMs);
        sender.join();
    }
    static Text TextOf(HWND window) {
        Text text(static_cast<size_t>(GetWindowTextLengthA(window)), '\0');
        text.resize(static_cast<size_t>(GetWindowTextA(window, text.data(), static_cast<int>(text.size()) + 1)));
        return text;
    }
    TextBox& m_Box = m_Form.Add<TextBox>("txt");
    Timer& m_Timer = m_Form.Add<Timer>("tm");
};

TEST_F(UiWindowTest, AHiddenBoxTakesEveryTextOfOthers) {
    m_Box.SetVisible(false);
    m_Form.SetCaption("Title");
    m_Form.Load();
    EXPECT_FALSE(IsWindowVisible(Window()));
    EXPECT_FALSE(IsWindowUnicode(Child()));

    std::vector<Text> seen;
    m_Box.ChangeEvent.Connect([&] {
        if (m_Box.GetText().empty()) return;
        seen.push_back(m_Box.GetText());
        m_Box.SetText("");
    });
    Text bytes;
    for (int byte = 1; byte < 256; ++byte) bytes += static_cast<char>(byte);
    const std::vector<Text> texts = {"one", bytes, "two\r\nlines", "same", "same", Text(65536, '%'), Text(200000, 'x')};
    for (const Text& text : texts) {
        SendFromOutside(Child(), text);
        EXPECT_EQ(TextOf(Child()), "");
    }
    EXPECT_EQ(seen, texts);
    // A client names the reply window; the values that mean every window must not reach them all.
    for (const WindowHandle everyone : {0, 0xFFFF, -1}) Win32WindowText().SendText(everyone, "OK");
    EXPECT_EQ(TextOf(Window()), "Title");
}

TEST_F(UiWindowTest, AShownBoxIsWrittenByProgramAndUser) {
    m_Box.SetMultiLine(true);
    m_Box.SetText("first\r\n");
    m_Form.Show();
    int changes = 0;
    m_Box.ChangeEvent.Connect([&] { ++changes; });
    m_Box.SetText(m_Box.GetText() + "second");
    m_Box.SetSelStart(static_cast<std::int32_t>(m_Box.GetText().size()));
    SendMessageA(Child(), WM_CHAR, '!', 0);
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(m_Box.GetText(), "first\r\nsecond!");
    EXPECT_EQ(m_Box.SelStart(), 14);
    m_Box.SetLocked(true);
    SendMessageA(Child(), WM_CHAR, '?', 0);
    m_Form.Hide();
    EXPECT_EQ(TextOf(Child()), "first\r\nsecond!") << "hidden, the peer answers";
    m_Form.Show();
    EXPECT_EQ(SendMessageA(Child(), EM_GETLINECOUNT, 0, 0), 2);
    EXPECT_EQ(changes, 2);
}

TEST_F(UiWindowTest, WhatAHandlerThrowsStopsAtTheWindow) {
    m_Timer.TimerEvent.Connect([] { throw Error(ErrorNumber::Subscript); });
    m_Box.ChangeEvent.Connect([] { throw Error(ErrorNumber::Overflow); });
    m_Form.QueryUnloadEvent.Connect([this](bool&, UnloadMode mode) {
        if (mode == UnloadMode::User) throw Error(ErrorNumber::DiskFull);
    });
    m_Timer.SetInterval(60000);
    m_Timer.SetEnabled(true);
    m_Form.Load();
    SendMessageA(Window(), WM_TIMER, 1, 0);
    SendFromOutside(Child(), "x");
    SendMessageA(Window(), WM_CLOSE, 0, 0);
    using testing::StartsWith;
    EXPECT_THAT(std::exchange(m_Failures, {}),
                testing::ElementsAre(StartsWith("9 "), StartsWith("6 "), StartsWith("61 ")));
    EXPECT_TRUE(IsWindow(Window())) << "an error keeps the form";
}

TEST_F(UiWindowTest, AFormMayGoInsideItsOwnMessages) {
    auto form = std::make_shared<Form>(m_Forms, "frmGone");
    TextBox& box = form->Add<TextBox>("txt");
    form->Load();
    const HWND window = WindowOf(*form);
    box.ChangeEvent.Connect([&] {
        form->Unload();
        form.reset();
    });
    SendFromOutside(GetWindow(window, GW_CHILD), "end");
    EXPECT_EQ(form, nullptr);
    EXPECT_FALSE(IsWindow(window));
}

TEST_F(UiWindowTest, IconsAreMadeOfFilesAndFreed) {
    m_Form.Load();
    const IconNumber own = m_Form.WindowIcon();
    EXPECT_NE(own, 0);
    EXPECT_EQ(OwnedIcon::Live(), 0);
    const auto take = [&](const Text& file) {
        m_Form.SetIcon(std::make_shared<Picture>(Picture{file, PictureKind::Icon, {}, {}}));
    };
    take(SmallIcon);
    EXPECT_EQ(OwnedIcon::Live(), 2);
    EXPECT_NE(m_Form.WindowIcon(), own);
    for (size_t length = 0; length < SmallIcon.size(); ++length) {
        take(SmallIcon.substr(0, length));
        EXPECT_EQ(m_Form.WindowIcon(), own) << length;
    }
    EXPECT_EQ(OwnedIcon::Live(), 0);
}

}  // namespace
}  // namespace tb
