// Option buttons of the system.
#pragma once

#include "ui/window/win32/Win32ChildPeer.h"

namespace tb {

class Win32OptionButtonPeer final : public Win32ChildPeer<OptionButtonPeer> {
public:
    // Error 51.
    Win32OptionButtonPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box, ButtonEvents& events);

    void SetSelected(bool selected) override;
    void SetTabStop(bool tabStop) override;

private:
    void OnCommand(WORD code) override;
    // With a colour of the system it shows what stands beneath it.
    HBRUSH OnColor(HDC context) override;

    ButtonEvents& m_Events;
    OwnedBrush m_Ground;
};

}  // namespace tb
