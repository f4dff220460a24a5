// What a window shows beneath the windows that stand on it: a colour, a picture, what was drawn, and images and lines.
#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "ui/window/Peers.h"
#include "ui/window/win32/Win32Surface.h"

namespace tb {

// Something that is painted into a window and is none itself.
class Windowless {
public:
    virtual ~Windowless() = default;
    // Pixels of the window that holds it; empty while it is hidden.
    virtual RECT Area() const = 0;
    virtual void Paint(HDC context) const = 0;
};

// It is painted from one finished surface, so that nothing flickers; without anything to show but its colour it has
// none.
class Win32Canvas {
public:
    // `system` must outlive it.
    explicit Win32Canvas(const Win32WindowSystem& system);
    Win32Canvas(const Win32Canvas&) = delete;
    Win32Canvas& operator=(const Win32Canvas&) = delete;

    // The window that it is painted into from now on; null before the window goes.
    void Attach(HWND window) { m_Window = window; }

    // Made when somebody asks for it.
    tb::Surface& Surface();
    // Another one takes away what was drawn.
    void SetBack(Color back);
    void SetPicture(const PictureRef& picture);
    // The system has other colours: with a ground in one of them, what was drawn goes too.
    void OnSystemColors();
    // The window may have another size.
    void Sized();

    // Behind those that are there.
    void Add(const Windowless& item);
    void Remove(const Windowless& item);
    void Restack(const Windowless& item, bool toBack);
    // The area looks different from now on.
    void Touch(const RECT& area);

    // What the window shows in `area` is painted there into a context, whose origin lies `offset` from the window's.
    void Paint(HDC context, const RECT& area, POINT offset = {});
    // For messages of the window: True when `message` is one that wants it to be painted, and it is done.
    bool OnMessage(UINT message, WPARAM wParam);

private:
    // Room inside the window, or what it was when the window had one; bounded by what a surface may cost.
    PixelSize Room() const;
    bool IsDrawn() const { return m_Surface != nullptr || m_Picture != nullptr; }
    // Where all is that the window shows; null when that is nothing but its colour.
    HDC Ground();
    void Compose();
    Win32Surface& Drawing();

    const Win32WindowSystem& m_System;
    HWND m_Window = nullptr;
    Color m_Back;
    PictureRef m_Picture;
    std::unique_ptr<Win32Surface> m_Surface;
    // From front to back.
    std::vector<const Windowless*> m_Items;
    // The surface with the items on it, and what of it is out of date.
    pcMemDC m_Composed;
    RECT m_Stale{};
    // What the system will ask to be painted.
    RECT m_Invalid{};
};

}  // namespace tb
