// Forms with their real windows, for tests of what is seen of them and of what they are told.
#pragma once

#include <windows.h>

// After windows.h.
#include <gtest/gtest.h>

#include <vector>

#include "platform/win32/MessageLoop.h"
#include "platform/win32/Win32WindowText.h"
#include "ui/window/Form.h"
#include "ui/window/win32/Win32WindowSystem.h"
#include "windows/Eventually.h"

namespace tb {

inline constexpr Color Red{0x0000FF};
inline constexpr Color Green{0x00FF00};
inline constexpr Color Blue{0xFF0000};

// An icon of 16 by 16 pixels of 1 bit: white where the mask lets it be seen, which is the lower half.
inline const Text SmallIcon = Text("\0\0\1\0\1\0\x10\x10\2\0\1\0\1\0\xB0\0\0\0\x16\0\0\0", 22) +
                              Text("\x28\0\0\0\x10\0\0\0\x20\0\0\0\1\0\1\0", 16) + Text(24, '\0') +
                              Text("\0\0\0\0\xFF\xFF\xFF\0", 8) + Text(32, '\xFF') + Text(64, '\0') + Text(32, '\xFF');

class RealWindows : public ::testing::Test {
protected:
    ~RealWindows() override {
        EXPECT_EQ(m_Failures, std::vector<Text>{});
        EXPECT_EQ(OwnedWindow::Live(), 0);
    }

    template <typename Condition>
    static bool Served(Condition done) {
        return Eventually([&] {
            ServeWaitingMessages();
            return done();
        });
    }
    static HWND WindowOf(const Form& form) { return ToHwnd(form.hWnd()); }
    // Where there is a window manager, a new window may be told the place that it had before the manager moved it.
    static void PutBack(Form& form) {
        RECT place{};
        GetWindowRect(WindowOf(form), &place);
        if (place.left == 0 && place.top == 0) form.Move(1500, 1500);
    }
    std::int32_t Pixels(Twips twips) const { return m_System.Scale().ToPixels(twips); }

    std::vector<Text> m_Failures;
    const std::function<void(const RuntimeError&)> m_Failed = [this](const RuntimeError& error) {
        m_Failures.push_back(error.Line());
    };
    Win32WindowSystem m_System{{"TestForm", "TestBox"}, m_Failed};
    Forms m_Forms{&m_System};
};

class RealForm : public RealWindows {
protected:
    RealForm() {
        m_Form.SetBorderStyle(0);
        m_Form.SetBackColor(Blue);
        Place(m_Form, 100, 100, 200, 150);
    }
    ~RealForm() override { m_Form.Unload(); }

    // Places are pixels here.
    Twips Of(std::int32_t pixels) const { return m_System.Scale().ToTwips(pixels); }
    void Place(VisualControl& control, std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
        control.Move(Of(left), Of(top), Of(width), Of(height));
    }
    // What becomes of pixels of a picture's file.
    std::int32_t AtThisScreen(std::int32_t pixels) const { return MulDiv(pixels, Pixels(1440), 96); }
    // A picture of one colour.
    static PictureRef Plain(std::int32_t width, std::int32_t height, std::uint32_t pixel) {
        return std::make_shared<Picture>(
            Picture{{},
                    PictureKind::Bmp,
                    {width, height},
                    std::vector<std::uint32_t>(static_cast<size_t>(width * height), pixel)});
    }
    HWND Window() const { return WindowOf(m_Form); }
    // What a window, with what stands on it, shows at a place inside it.
    static Color Seen(HWND window, std::int32_t x, std::int32_t y) {
        ServeWaitingMessages();
        return SeenNow(window, x, y);
    }
    // The same before any message is served.
    static Color SeenNow(HWND window, std::int32_t x, std::int32_t y) {
        POINT place{x, y};
        const HWND child = ChildWindowFromPointEx(window, place, CWP_SKIPINVISIBLE);
        if (child != window) {
            MapWindowPoints(window, child, &place, 1);
            return SeenNow(child, static_cast<std::int32_t>(place.x), static_cast<std::int32_t>(place.y));
        }
        const HDC context = GetDC(window);
        const Color color(static_cast<std::int32_t>(GetPixel(context, x, y)));
        ReleaseDC(window, context);
        return color;
    }
    Color Seen(std::int32_t x, std::int32_t y) const { return Seen(Window(), x, y); }
    HWND Child(const char* className, int index = 0) const {
        HWND child = nullptr;
        for (; index >= 0; --index) child = FindWindowExA(Window(), child, className, nullptr);
        return child;
    }

    Form m_Form{m_Forms, "frmDrawn"};
};

}  // namespace tb
