#include "ui/window/win32/Win32ButtonPeers.h"

#include "platform/win32/MessageLoop.h"

namespace tb {

template <typename Base>
Win32ButtonPeer<Base>::Win32ButtonPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box,
                                       ButtonEvents& events, DWORD style)
    : Win32ChildPeer<Base>(system, form, box, {L"BUTTON", style}), m_Events(events) {
    UseDialogKeys(form.Handle());
}

template <typename Base>
void Win32ButtonPeer<Base>::OnCommand(WORD code) {
    if (code != BN_CLICKED) return;
    const std::shared_ptr<void> alive = m_Events.KeepAlive();
    m_Events.Clicked();
}

template class Win32ButtonPeer<CommandButtonPeer>;
template class Win32ButtonPeer<OptionButtonPeer>;

void Win32CommandButtonPeer::SetDefault(bool isDefault) {
    if (isDefault) {
        m_Form.SetDefaultButton(Handle());
    } else if (m_Form.DefaultButton() == Handle()) {
        m_Form.SetDefaultButton(nullptr);
    }
    SendMessageW(Handle(), BM_SETSTYLE, isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON, TRUE);
}

void Win32CommandButtonPeer::SetCancel(bool isCancel) {
    if (isCancel) {
        m_Form.SetCancelButton(Handle());
    } else if (m_Form.CancelButton() == Handle()) {
        m_Form.SetCancelButton(nullptr);
    }
}

Win32OptionButtonPeer::Win32OptionButtonPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box,
                                             ButtonEvents& events)
    : Win32ButtonPeer(system, form, box, events, BS_AUTORADIOBUTTON) {
    // The arrow keys go round among the buttons from this one on.
    const HWND before = GetWindow(Handle(), GW_HWNDPREV);
    const LRESULT code = before != nullptr ? SendMessageW(before, WM_GETDLGCODE, 0, 0) : 0;
    if ((code & DLGC_RADIOBUTTON) == 0) ChangeStyle(WS_GROUP, true);
}

void Win32OptionButtonPeer::SetSelected(bool selected) {
    SendMessageW(Handle(), BM_SETCHECK, selected ? BST_CHECKED : BST_UNCHECKED, 0);
}

void Win32OptionButtonPeer::SetTabStop(bool tabStop) { ChangeStyle(WS_TABSTOP, tabStop); }

void Win32OptionButtonPeer::ChangeStyle(LONG_PTR bit, bool set) {
    const LONG_PTR style = GetWindowLongPtrW(Handle(), GWL_STYLE);
    SetWindowLongPtrW(Handle(), GWL_STYLE, set ? style | bit : style & ~bit);
}

}  // namespace tb
