#include "platform/win32/ChannelWindow.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "components/tbBHBridge/ChannelNames.h"
#include "platform/win32/Win32WindowText.h"

namespace tb {
namespace {

// Tests of several processes may run at once.
Text TestCaption() { return "Trawlbeam window test " + std::to_string(GetCurrentProcessId()); }

class ChannelWindowTest : public testing::Test {
protected:
    ChannelWindowTest()
        : m_Window({NormalClasses.Window, m_Caption.c_str(), NormalClasses.TextBox},
                   {[this](const Text& text) { m_TextSet(text); }, [this] { ++m_CloseAsked; },
                    [this](const RuntimeError& error) { m_Failures.push_back(error.Number); }}) {}

    HWND Top() { return ToHwnd(m_System.FindTopLevel(NormalClasses.Window, m_Caption)); }
    WindowHandle Box() { return m_System.FindChild(ToWindowHandle(Top()), NormalClasses.TextBox); }

    // Sends from another thread, as another process would, and serves this thread's windows meanwhile.
    void SendFromOutside(const Text& text) {
        const WindowHandle box = Box();
        std::thread sender([&] { m_System.SendText(box, text); });
        const HANDLE thread = reinterpret_cast<HANDLE>(pthread_gethandle(sender.native_handle()));
        MSG message;
        while (MsgWaitForMultipleObjects(1, &thread, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
            while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
        }
        sender.join();
    }

    const Text m_Caption = TestCaption();
    Win32WindowText m_System;
    std::vector<Text> m_Texts;
    std::function<void(const Text&)> m_TextSet = [this](const Text& text) { m_Texts.push_back(text); };
    std::vector<std::int32_t> m_Failures;
    int m_CloseAsked = 0;
    ChannelWindow m_Window;
};

TEST_F(ChannelWindowTest, StandsWhereClientsLookForIt) {
    ASSERT_NE(Top(), nullptr);
    ASSERT_NE(Box(), 0);
    EXPECT_EQ(GetWindow(Top(), GW_CHILD), ToHwnd(Box()));
    EXPECT_FALSE(IsWindowVisible(Top()));
    EXPECT_FALSE(IsWindowUnicode(Top()));
    EXPECT_FALSE(IsWindowUnicode(ToHwnd(Box())));
}

TEST_F(ChannelWindowTest, TakesEveryTextAsItIs) {
    Text allBytes;
    for (int byte = 1; byte < 256; ++byte) allBytes += static_cast<char>(byte);
    Text large(200000, 'x');
    large[65536] = '\t';
    const std::vector<Text> texts = {"one", allBytes, "\r\n two\r\n\r\nlines \n", "same", "same", Text(65536, '%'),
                                     large};
    for (const Text& text : texts) {
        SendFromOutside(text);
        EXPECT_EQ(GetWindowTextLengthA(ToHwnd(Box())), 0);
    }
    EXPECT_EQ(m_Texts, texts);
}

TEST_F(ChannelWindowTest, IsSilentAboutTheEmptyText) {
    SendFromOutside("");
    SendFromOutside("x");
    SendFromOutside("");
    EXPECT_EQ(m_Texts, (std::vector<Text>{"x"}));
}

// While a handler waits, another sender is served inside; neither text is lost or mixed with the other.
TEST_F(ChannelWindowTest, ServesAnotherSenderWhileAHandlerWaits) {
    std::vector<Text> events;
    m_TextSet = [&](const Text& text) {
        events.push_back("begin " + text);
        if (text == "outer") SendFromOutside("inner");
        events.push_back("end " + text);
    };
    SendFromOutside("outer");
    EXPECT_EQ(events, (std::vector<Text>{"begin outer", "begin inner", "end inner", "end outer"}));
    EXPECT_EQ(GetWindowTextLengthA(ToHwnd(Box())), 0);
}

TEST_F(ChannelWindowTest, StopsWhatAHandlerThrowsAndClearsTheBox) {
    m_TextSet = [](const Text&) { throw Error(ErrorNumber::Subscript); };
    SendFromOutside("x");
    EXPECT_EQ(m_Failures, (std::vector<std::int32_t>{9}));
    EXPECT_EQ(GetWindowTextLengthA(ToHwnd(Box())), 0);
}

TEST_F(ChannelWindowTest, AsksToEndOnCloseAndAtTheEndOfTheSession) {
    SendMessageA(Top(), WM_CLOSE, 0, 0);
    EXPECT_EQ(m_CloseAsked, 1);
    EXPECT_EQ(SendMessageA(Top(), WM_QUERYENDSESSION, 0, 0), TRUE);
    SendMessageA(Top(), WM_ENDSESSION, FALSE, 0);
    EXPECT_EQ(m_CloseAsked, 1);
    SendMessageA(Top(), WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(m_CloseAsked, 2);
    EXPECT_NE(Box(), 0);
}

// A client names the reply window; the values that mean every window must not reach them all.
TEST_F(ChannelWindowTest, IsNotReachedByATextForEveryWindow) {
    for (const WindowHandle everyone : {0, 0xFFFF, -1}) m_System.SendText(everyone, "OK");
    EXPECT_NE(Top(), nullptr);
}

}  // namespace
}  // namespace tb
