// A top-level window. It moves messages to typed handlers and decides nothing.
#pragma once

#include <map>

#include "ui/window/win32/Win32Icon.h"
#include "ui/window/win32/Win32Peer.h"

namespace tb {

class Win32FormPeer : public Win32Peer<FormPeer> {
public:
    // Error 51 when there is no desktop to make windows on.
    Win32FormPeer(const Win32WindowSystem& system, FormEvents& events);

    WindowHandle Window() const override;
    TwipSize ClientSize() const override;
    void SetBounds(const TwipRect& bounds) override;
    void SetVisible(bool visible) override;
    void SetWindowState(WindowStates state) override;
    void SetBorderStyle(BorderStyles style) override;
    void SetIcon(const PictureRef& picture) override;
    IconNumber Icon() const override;
    bool SetForeground() override;
    std::int32_t PopupMenu(const std::vector<MenuRow>& rows, std::uint32_t flags) override;
    std::unique_ptr<TextBoxPeer> MakeTextBox(TextBoxEvents& events, bool multiLine) override;
    std::unique_ptr<TimerPeer> MakeTimer(TimerEvents& events) override;

    bool IsVisible() const { return IsWindowVisible(Handle()) != FALSE; }

    // Children tell when their window comes and goes, timers when they run and stop.
    void AddChild(HWND window, Win32Child& child) { m_Children[window] = &child; }
    void RemoveChild(HWND window) { m_Children.erase(window); }
    void TimerRuns(UINT_PTR id, TimerEvents& events) { m_Timers[id] = &events; }
    void TimerStops(UINT_PTR id) { m_Timers.erase(id); }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    // True when the message is dealt with and `result` answers it. The peer may be gone afterwards.
    bool Dispatch(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
    void OnPlaced();
    void OnTimer(UINT_PTR id);
    bool OnCommand(HWND child, WORD code);
    bool OnColor(HWND child, HDC context, LRESULT& result);
    void OnEraseBackground(HDC context);
    Win32Child* Child(HWND window) const;
    int ShowCommand() const;

    FormEvents& m_Events;
    WindowStates m_State = WindowStates::Normal;
    // The window has got its first place; what it had before is nobody's business.
    bool m_Placed = false;
    Win32Icon m_BigIcon;
    Win32Icon m_SmallIcon;
    std::map<HWND, Win32Child*> m_Children;
    std::map<UINT_PTR, TimerEvents*> m_Timers;
    UINT_PTR m_TimersMade = 0;
};

}  // namespace tb
