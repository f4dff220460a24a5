// A form with its real window, for tests of what is seen of it and of what it is told.
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

class RealForm : public ::testing::Test {
protected:
    RealForm() {
        m_Form.SetBorderStyle(0);
        m_Form.SetBackColor(Blue);
        Place(m_Form, 100, 100, 200, 150);
    }
    ~RealForm() override {
        m_Form.Unload();
        EXPECT_EQ(m_Failures, std::vector<Text>{});
        EXPECT_EQ(OwnedWindow::Live(), 0);
    }

    // Places are pixels here.
    Twips Of(std::int32_t pixels) const { return m_System.Scale().ToTwips(pixels); }
    void Place(VisualControl& control, std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
        control.Move(Of(left), Of(top), Of(width), Of(height));
    }
    // What becomes of pixels of a picture's file.
    std::int32_t AtThisScreen(std::int32_t pixels) const { return MulDiv(pixels, m_System.Scale().ToPixels(1440), 96); }
    // A picture of one colour.
    static PictureRef Plain(std::int32_t width, std::int32_t height, std::uint32_t pixel) {
        return std::make_shared<Picture>(
            Picture{{},
                    PictureKind::Bmp,
                    {width, height},
                    std::vector<std::uint32_t>(static_cast<size_t>(width * height), pixel)});
    }
    static HWND WindowOf(const Form& form) { return ToHwnd(form.hWnd()); }
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
    template <typename Condition>
    static bool Served(Condition done) {
        return Eventually([&] {
            ServeWaitingMessages();
            return done();
        });
    }

    std::vector<Text> m_Failures;
    Win32WindowSystem m_System{{"TestForm", "TestBox"},
                               [this](const RuntimeError& error) { m_Failures.push_back(error.Line()); }};
    Forms m_Forms{&m_System};
    Form m_Form{m_Forms, "frmDrawn"};
};

}  // namespace tb
