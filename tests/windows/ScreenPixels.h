// Pixels of the screen, or of what a test has drawn to compare them with.
#pragma once

#include <windows.h>

#include <vector>

#include "platform/win32/Handle.h"
#include "ui/window/win32/pcMemDC.h"

namespace tb {

// Row by row from the top, 0x00RRGGBB.
struct ScreenPixels {
    LONG Width = 0;
    LONG Height = 0;
    std::vector<DWORD> Pixels;
    bool operator==(const ScreenPixels&) const = default;

    DWORD At(LONG x, LONG y) const { return Pixels.at(static_cast<size_t>(y * Width + x)); }
    // Where the other one, of the same size, differs inside the area, and where outside of all areas.
    bool DiffersIn(const ScreenPixels& other, const RECT& area) const {
        for (LONG y = area.top; y < area.bottom; ++y) {
            for (LONG x = area.left; x < area.right; ++x) {
                if (At(x, y) != other.At(x, y)) return true;
            }
        }
        return false;
    }
    // The area of `other` takes the place of what is here.
    void TakeFrom(const ScreenPixels& other, const RECT& area) {
        for (LONG y = area.top; y < area.bottom; ++y) {
            for (LONG x = area.left; x < area.right; ++x) {
                Pixels.at(static_cast<size_t>(y * Width + x)) = other.At(x, y);
            }
        }
    }
};

inline ScreenPixels ReadPixels(HDC context, const RECT& area) {
    ScreenPixels read{area.right - area.left, area.bottom - area.top, {}};
    const PixelDC copy(static_cast<std::int32_t>(read.Width), static_cast<std::int32_t>(read.Height));
    BitBlt(copy.hDC(), 0, 0, copy.Width(), copy.Height(), context, static_cast<int>(area.left),
           static_cast<int>(area.top), SRCCOPY);
    const std::uint32_t* const pixels = copy.Pixels();
    for (LONG index = 0; index < read.Width * read.Height; ++index) read.Pixels.push_back(pixels[index] & 0xFFFFFFU);
    return read;
}

// What the user sees of a window, whatever process it belongs to, and of what lies in front of it.
inline ScreenPixels SeenOf(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    const HDC screen = GetDC(nullptr);
    const ScreenPixels seen = ReadPixels(screen, place);
    ReleaseDC(nullptr, screen);
    return seen;
}

}  // namespace tb
