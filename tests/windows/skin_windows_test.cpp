// A skinned window as a real one: its outline and what the screen shows of it, in both looks.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "base/bytes.h"
#include "components/tbXML/Document.h"
#include "fakes/FakePlatform.h"
#include "fakes/RecordedLog.h"
#include "platform/win32/MessageLoop.h"
#include "platform/win32/Win32WindowText.h"
#include "sitedb/codec/Base64.h"
#include "ui/skin/tbSkin.h"
#include "ui/window/Image.h"
#include "ui/window/win32/Win32WindowSystem.h"
#include "windows/Eventually.h"

namespace tb {
namespace {

// A bitmap file of one colour, 0x00BBGGRR, as a skin has it: all bits are 0, the first of its two colours.
Text PlainBitmap(std::int32_t width, std::int32_t height, Color color) {
    constexpr size_t Bits = 62;
    Text file(Bits + static_cast<size_t>((width + 31) / 32 * 4 * height), '\0');
    file.replace(0, 2, "BM");
    const auto put = [&](size_t at, std::int32_t value) {
        PutLittleEndian(static_cast<std::uint32_t>(value), file.data() + at, 4);
    };
    put(10, Bits);
    put(14, 40);
    put(18, width);
    put(22, height);
    put(26, 0x10001);
    put(54, color.Red() << 16 | color.Green() << 8 | color.Blue());
    return Base64Encode(file);
}

struct SkinnedForm : Form {
    SkinnedForm(Forms& forms, const App& app, LogSink& log)
        : Form(forms, "frmMessage"), tbSkin1(AddWith<tbSkin>("tbSkin1", app, log)) {
        LoadEvent.Connect([this] { tbSkin1.DressWindow(); });
        Move(Family().Scale().ToTwips(100), Family().Scale().ToTwips(100), 5145, 1500);
    }
    tbSkin& tbSkin1;
};

class SkinnedWindowTest : public ::testing::Test {
protected:
    ~SkinnedWindowTest() override {
        EXPECT_EQ(m_Failures, std::vector<Text>{});
        EXPECT_EQ(m_Log.Lines, std::vector<Text>{});
        EXPECT_EQ(OwnedWindow::Live(), 0);
    }

    void SetSkin(const Text& content) {
        const Text box = PlainBitmap(16, 16, 0x0000C0);
        Document document;
        document.LoadXML("<Skin><G Name='Globals'><P Name='X'>" + box + "</P><P Name='XInactive'>" +
                         PlainBitmap(16, 16, 0x00C000) + "</P></G><W Name='frmMessage' FormBackColor='15790320' " +
                         "Border1='128' Border2='32768'>" + content + "</W></Skin>");
        m_App.SkinRoot = document.Root();
    }
    static Color Seen(const Form& form, std::int32_t x, std::int32_t y) {
        POINT at{x, y};
        ClientToScreen(ToHwnd(form.hWnd()), &at);
        const HDC screen = GetDC(nullptr);
        const Color color(static_cast<std::int32_t>(GetPixel(screen, at.x, at.y)));
        ReleaseDC(nullptr, screen);
        return color;
    }
    static bool SoonSeen(const Form& form, std::int32_t x, std::int32_t y, Color color) {
        return Eventually([&] {
            ServeWaitingMessages();
            return Seen(form, x, y) == color;
        });
    }

    FakeSystem m_System;
    App m_App{m_System, TestDeployment()};
    RecordedLog m_Log;
    std::vector<Text> m_Failures;
    Win32WindowSystem m_Windows{{"TestForm", "TestBox"},
                                [this](const RuntimeError& error) { m_Failures.push_back(error.Line()); }};
    Forms m_Forms{&m_Windows};
};

TEST_F(SkinnedWindowTest, ShowsBarBorderAndLookByThePixel) {
    ASSERT_EQ(m_Forms.Scale().ToPixels(1440), 96) << "the pixels below are those of 96 dots an inch";
    SetSkin(
        "<Caption CaptionHeight='375' Close='1' CaptionTopColor1='255' CaptionTopColor2='65280' "
        "CaptionTopColor3='16711680' CaptionLineColor1='65535' CaptionLineColor2='16776960' CaptionBackColor='1'>" +
        PlainBitmap(400, 25, 0x204080) + "</Caption>");
    SkinnedForm form(m_Forms, m_App, m_Log);
    form.Show();
    ASSERT_TRUE(Eventually([&] {
        ServeWaitingMessages();
        return form.SetForeground() && form.IsForeground();
    }));
    const HRGN region = CreateRectRgn(0, 0, 0, 0);
    EXPECT_EQ(GetWindowRgn(ToHwnd(form.hWnd()), region), COMPLEXREGION);
    RECT outline{};
    GetRgnBox(region, &outline);
    EXPECT_TRUE(outline.left == 0 && outline.top == 0 && outline.right == 342 && outline.bottom == 99);
    EXPECT_FALSE(PtInRegion(region, 0, 0)) << "a round corner";
    DeleteObject(region);

    ASSERT_TRUE(SoonSeen(form, 100, 10, Color(0x204080)));
    const struct {
        std::int32_t X;
        std::int32_t Y;
        std::int32_t Color;
        const char* What;
    } pixels[] = {{100, 0, 255, "top line 1"},      {100, 1, 0x00FF00, "top line 2"}, {100, 2, 0xFF0000, "top line 3"},
                  {0, 60, 128, "outer border"},     {1, 60, 32768, "inner border"},   {341, 60, 128, "outer border"},
                  {340, 60, 32768, "inner border"}, {100, 98, 128, "outer border"},   {100, 97, 32768, "inner border"},
                  {2, 60, 0xF0F0F0, "ground"},      {2, 3, 0x204080, "bar"},          {339, 3, 0x204080, "bar"},
                  {100, 25, 0x204080, "bar"},       {100, 26, 0x00FFFF, "line 1"},    {100, 27, 0xFFFF00, "line 2"},
                  {100, 28, 0xF0F0F0, "ground"},    {316, 6, 0x0000C0, "close box"},  {331, 21, 0x0000C0, "close box"},
                  {315, 6, 0x204080, "beside it"},  {332, 21, 0x204080, "beside it"}, {316, 5, 0x204080, "above it"}};
    for (const auto& pixel : pixels) {
        EXPECT_EQ(Seen(form, pixel.X, pixel.Y).Bits(), pixel.Color) << pixel.What << " " << pixel.X << "," << pixel.Y;
    }

    Form other(m_Forms, "frmOther");
    other.Move(m_Forms.Scale().ToTwips(100), m_Forms.Scale().ToTwips(400), 3000, 3000);
    other.Show();
    ASSERT_TRUE(Eventually([&] {
        ServeWaitingMessages();
        return other.SetForeground() && !form.IsForeground();
    }));
    EXPECT_TRUE(SoonSeen(form, 100, 10, Color(0x23468D))) << "lighter in the inactive look";
    EXPECT_TRUE(SoonSeen(form, 320, 10, Color(0x00C000))) << "with its close box";
    EXPECT_TRUE(SoonSeen(form, 100, 26, Color(0x00FFFF)));
    form.tbSkin1.ucX1.ClickEvent.Raise();
    EXPECT_FALSE(form.IsLoaded());
    other.Unload();
}

TEST_F(SkinnedWindowTest, IsDressedAndGoneManyTimes) {
    Text pictures;
    for (int count = 0; count < 20; ++count) {
        pictures +=
            "<Image Left='" + std::to_string(count * 200) + "' Top='600'>" + PlainBitmap(64, 64, count) + "</Image>";
    }
    SetSkin("<Caption CaptionHeight='420' Close='1'>" + PlainBitmap(800, 28, 0x204080) + "</Caption><Graphics>" +
            pictures + "</Graphics>");
    constexpr int Times = 30;
    std::vector<double> milliseconds;
    std::int32_t handles = 0;
    for (int time = 0; time < Times; ++time) {
        SkinnedForm form(m_Forms, m_App, m_Log);
        form.Move(0, 0, 9600, 6900);
        LARGE_INTEGER frequency{};
        LARGE_INTEGER begin{};
        LARGE_INTEGER end{};
        QueryPerformanceFrequency(&frequency);
        QueryPerformanceCounter(&begin);
        // Showing paints before it returns.
        form.Show();
        QueryPerformanceCounter(&end);
        milliseconds.push_back(1000.0 * static_cast<double>(end.QuadPart - begin.QuadPart) /
                               static_cast<double>(frequency.QuadPart));
        EXPECT_NE(form.Find("uiPic19"), nullptr);
        form.Unload();
        // The fonts of the first one stay for the others.
        if (time == 0) handles = HandleCount::Live();
        ASSERT_EQ(HandleCount::Live(), handles) << time;
    }
    std::sort(milliseconds.begin(), milliseconds.end());
    std::printf("a window with 20 pictures is painted after %.1f ms in the median, %.1f at most\n",
                milliseconds[milliseconds.size() / 2], milliseconds.back());
}

}  // namespace
}  // namespace tb
