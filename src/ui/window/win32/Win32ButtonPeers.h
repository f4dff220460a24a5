// Push buttons and option buttons of the system.
#pragma once

#include "ui/window/win32/Win32ChildPeer.h"

namespace tb {

template <typename Base>
class Win32ButtonPeer : public Win32ChildPeer<Base> {
protected:
    // The keys of a dialog work in the form from now on. Error 51.
    Win32ButtonPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box, ButtonEvents& events,
                    DWORD style);

    void OnCommand(WORD code) override;

private:
    ButtonEvents& m_Events;
};

class Win32CommandButtonPeer : public Win32ButtonPeer<CommandButtonPeer> {
public:
    Win32CommandButtonPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box, ButtonEvents& events)
        : Win32ButtonPeer(system, form, box, events, BS_PUSHBUTTON | WS_TABSTOP | WS_GROUP) {}

    void SetDefault(bool isDefault) override;
    void SetCancel(bool isCancel) override;
};

class Win32OptionButtonPeer : public Win32ButtonPeer<OptionButtonPeer> {
public:
    Win32OptionButtonPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box, ButtonEvents& events);

    void SetSelected(bool selected) override;
    void SetTabStop(bool tabStop) override;

private:
    void ChangeStyle(LONG_PTR bit, bool set);
};

}  // namespace tb
