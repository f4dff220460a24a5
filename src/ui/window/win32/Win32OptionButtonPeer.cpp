#include "ui/window/win32/Win32OptionButtonPeer.h"

#include <uxtheme.h>

#include "ui/window/win32/pcMemDC.h"

namespace tb {

namespace {

// Pixels; a larger one does without what stands beneath it.
constexpr LONG LongestSide = 2000;

}  // namespace

Win32OptionButtonPeer::Win32OptionButtonPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box,
                                             ButtonEvents& events)
    : Win32ChildPeer(system, form, box, {L"BUTTON", BS_AUTORADIOBUTTON}), m_Events(events) {
    // A theme of the system has colours of its own for the text, which the ground need not go with.
    SetWindowTheme(Handle(), L"", L"");
    // The arrow keys go round among the buttons from this one on.
    const HWND before = GetWindow(Handle(), GW_HWNDPREV);
    const LRESULT code = before != nullptr ? SendMessageW(before, WM_GETDLGCODE, 0, 0) : 0;
    if ((code & DLGC_RADIOBUTTON) == 0) ReplaceBits(Handle(), GWL_STYLE, WS_GROUP, WS_GROUP);
}

void Win32OptionButtonPeer::OnCommand(WORD code) {
    if (code != BN_CLICKED) return;
    const std::shared_ptr<void> alive = m_Events.KeepAlive();
    m_Events.Clicked();
}

HBRUSH Win32OptionButtonPeer::OnColor(HDC context) {
    const HBRUSH plain = Colored(context);
    if (!m_Colors.Back.IsSystem()) return plain;
    RECT client{};
    GetClientRect(Handle(), &client);
    if (client.right > LongestSide || client.bottom > LongestSide) return plain;
    pcMemDC ground(static_cast<int>(client.right), static_cast<int>(client.bottom));
    if (ground.Width() == 0) return plain;
    PaintBeneath(ground.hDC(), client);
    // The brush has pixels of its own.
    m_Ground = OwnedBrush(CreatePatternBrush(ground.TakeBitmap().Get()));
    SetBkMode(context, TRANSPARENT);
    SetBrushOrgEx(context, 0, 0, nullptr);
    return m_Ground ? m_Ground.Get() : plain;
}

void Win32OptionButtonPeer::SetSelected(bool selected) {
    SendMessageW(Handle(), BM_SETCHECK, selected ? BST_CHECKED : BST_UNCHECKED, 0);
}

void Win32OptionButtonPeer::SetTabStop(bool tabStop) {
    ReplaceBits(Handle(), GWL_STYLE, WS_TABSTOP, tabStop ? WS_TABSTOP : 0);
}

}  // namespace tb
