// What windows of all kinds have in common.
#pragma once

#include <windows.h>

#include <utility>

#include "platform/win32/Handle.h"
#include "platform/win32/Win32Text.h"
#include "ui/window/Peers.h"
#include "ui/window/win32/Win32Drawing.h"
#include "ui/window/win32/Win32WindowSystem.h"

namespace tb {

// A window inside a form, as its form's procedure sees it.
class Win32Child {
public:
    virtual ~Win32Child() = default;
    // A notification of the child.
    virtual void OnCommand(WORD /*code*/) {}
    // The child is to be drawn.
    virtual void OnDraw(const DRAWITEMSTRUCT& /*item*/) {}
    // Enter presses it while it has the focus.
    virtual bool TakesEnter() const { return false; }
    // Sets the colours of its text and returns the brush of its ground, which the system owns.
    virtual HBRUSH OnColor(HDC context) = 0;
    // The system has other colours.
    virtual void OnSystemColors() {}
    // The form is shown or hidden from now on.
    virtual void OnFormVisible(bool /*visible*/) {}
};

template <typename Base>
class Win32Peer : public Base {
public:
    Win32Peer(const Win32Peer&) = delete;
    Win32Peer& operator=(const Win32Peer&) = delete;

    HWND Handle() const { return m_Window.Get(); }

    void SetBounds(const TwipRect& bounds) override {
        m_Pixels = m_System.ToPixels(bounds);
        SetWindowPos(Handle(), nullptr, m_Pixels.Left, m_Pixels.Top, m_Pixels.Width, m_Pixels.Height,
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
    void SetEnabled(bool enabled) override { EnableWindow(Handle(), enabled ? TRUE : FALSE); }
    void SetText(const Text& text) override { SetWindowTextW(Handle(), ToSystem(text).c_str()); }
    void SetColors(const ControlColors& colors) override {
        m_Colors = colors;
        InvalidateRect(Handle(), nullptr, TRUE);
    }
    void SetFont(const Font& font) override {
        // The window shows the other one until it has this.
        const auto before = std::exchange(m_Font, m_System.FontOf(font));
        SendMessageW(Handle(), WM_SETFONT, reinterpret_cast<WPARAM>(m_Font->Get()), TRUE);
    }
    void SetFocus() override { ::SetFocus(Handle()); }
    void SetToolTip(const Text& /*text*/) override {}
    void SetZOrder(bool toBack) override {
        SetWindowPos(Handle(), toBack ? HWND_BOTTOM : HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }

protected:
    // Sets this window's colours for text drawn in a context; returns the brush of its ground.
    HBRUSH Colored(HDC context) const {
        SetTextColor(context, ToColorRef(m_Colors.Fore));
        SetBkColor(context, ToColorRef(m_Colors.Back));
        SetDCBrushColor(context, ToColorRef(m_Colors.Back));
        return static_cast<HBRUSH>(GetStockObject(DC_BRUSH));
    }

    explicit Win32Peer(const Win32WindowSystem& system) : m_System(system) {}
    // No message reaches the object while its window goes.
    ~Win32Peer() override {
        if (m_Window) SetWindowLongPtrW(Handle(), GWLP_USERDATA, 0);
    }

    const Win32WindowSystem& m_System;
    OwnedWindow m_Window;
    ControlColors m_Colors;
    // The place last given, counted in pixels.
    PixelRect m_Pixels;
    std::shared_ptr<const OwnedFont> m_Font;
};

}  // namespace tb
