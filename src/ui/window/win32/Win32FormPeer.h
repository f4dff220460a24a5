// A top-level window. It moves messages to typed handlers and decides nothing.
#pragma once

#include <map>

#include "ui/window/win32/Win32DrawnPeer.h"
#include "ui/window/win32/Win32Icon.h"
#include "ui/window/win32/Win32ToolTips.h"

namespace tb {

class Win32FormPeer : public Win32DrawnPeer<Win32Peer<FormPeer>> {
public:
    // Error 51 when there is no desktop to make windows on.
    Win32FormPeer(const Win32WindowSystem& system, FormEvents& events, PointerEvents& pointer);

    // No message reaches it while what it holds goes.
    ~Win32FormPeer() override { SetWindowLongPtrW(Handle(), GWLP_USERDATA, 0); }

    WindowHandle Window() const override;
    TwipSize ClientSize() const override;
    void SetBounds(const TwipRect& bounds) override;
    void SetVisible(bool visible) override;
    void ShowInactive() override;
    void SetWindowState(WindowStates state) override;
    void SetBorderStyle(BorderStyles style) override;
    void SetInTaskList(bool inTaskList) override;
    void SetIcon(const PictureRef& picture) override;
    IconNumber Icon() const override;
    bool SetForeground() override;
    bool IsForeground() const override { return GetForegroundWindow() == Handle(); }
    void Flash() override;
    void SetTopMost(bool onTop, bool activate) override;
    void SetOwner(FormPeer* owner) override;
    void SetRoundRegion(PixelPoint from, PixelPoint to, std::int32_t corner) override;
    void SetLayering(const Layering& layering) override;
    void DragByCaption() override;
    void SetMousePointer(MousePointers pointer) override;
    std::int32_t PopupMenu(const std::vector<MenuRow>& rows, std::uint32_t flags) override;
    void EndModes() override;
    std::unique_ptr<BoxPeer> MakeBox(BoxPeer* box, PointerEvents& events, bool hasBorder) override;
    std::unique_ptr<LabelPeer> MakeLabel(BoxPeer* box, PointerEvents& events, bool useMnemonic) override;
    std::unique_ptr<ImagePeer> MakeImage(BoxPeer* box) override;
    std::unique_ptr<LinePeer> MakeLine(BoxPeer* box) override;
    std::unique_ptr<CommandButtonPeer> MakeCommandButton(BoxPeer* box, ButtonEvents& events) override;
    std::unique_ptr<OptionButtonPeer> MakeOptionButton(BoxPeer* box, ButtonEvents& events) override;
    std::unique_ptr<TextBoxPeer> MakeTextBox(TextBoxEvents& events, bool multiLine) override;
    std::unique_ptr<TimerPeer> MakeTimer(TimerEvents& events) override;

    bool IsVisible() const { return IsWindowVisible(Handle()) != FALSE; }

    // Children tell when their window comes and goes, timers when they run and stop.
    void AddChild(HWND window, Win32Child& child) { m_Children[window] = &child; }
    void RemoveChild(HWND window);
    // The text that is shown when the mouse rests on a child.
    void SetTip(HWND child, const Text& text);
    // The buttons that Enter and Escape press; null for none.
    void SetDefaultButton(HWND button);
    HWND DefaultButton() const { return m_DefaultButton; }
    void SetCancelButton(HWND button) { m_CancelButton = button; }
    HWND CancelButton() const { return m_CancelButton; }
    // The button that Enter presses now: the one that has the focus, or else the default one.
    HWND EnterButton() const;
    // That may have changed.
    void ShowDefaultButton() const;
    // The user moves among the controls by keys, and wants to see where they go.
    bool KeyboardInUse() const { return m_KeyboardInUse; }
    void TimerRuns(UINT_PTR id, TimerEvents& events) { m_Timers[id] = &events; }
    void TimerStops(UINT_PTR id) { m_Timers.erase(id); }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    // True when the message is dealt with and `result` answers it. The peer may be gone afterwards.
    bool Dispatch(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
    bool DispatchOfChildren(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
    void OnPlaced();
    void OnTimer(UINT_PTR id);
    bool OnCommand(HWND child, WORD id, WORD code);
    // Enter or Escape.
    void OnDialogKey(WORD id);
    bool OnKey(std::int32_t key);
    void OnActivate(WPARAM wParam, LPARAM lParam);
    bool OnFocus();
    bool OnCursor(WORD area);
    bool OnColor(HWND child, HDC context, LRESULT& result);
    bool OnDraw(const DRAWITEMSTRUCT& item);
    void OnSystemColors();
    Win32Child* Child(HWND window) const;
    int ShowCommand() const;
    void ShowBy(int command);
    void ApplyStyles();

    FormEvents& m_Events;
    WindowStates m_State = WindowStates::Normal;
    BorderStyles m_Border = BorderStyles::Sizable;
    bool m_InTaskList = true;
    // Clicks do not make it the active window.
    bool m_StaysInactive = false;
    // The window has got its first place; what it had before is nobody's business.
    bool m_Placed = false;
    Win32Icon m_BigIcon;
    Win32Icon m_SmallIcon;
    std::map<HWND, Win32Child*> m_Children;
    std::map<UINT_PTR, TimerEvents*> m_Timers;
    UINT_PTR m_TimersMade = 0;
    HWND m_DefaultButton = nullptr;
    HWND m_CancelButton = nullptr;
    bool m_KeyboardInUse = false;
    // One of several messages about the same choice of the user has come.
    bool m_ColorsHaveChanged = false;
    // The child that had the focus when another window became the active one.
    HWND m_Focused = nullptr;
    MousePointers m_Cursor = MousePointers::Default;
    Win32ToolTips m_Tips;
};

}  // namespace tb
