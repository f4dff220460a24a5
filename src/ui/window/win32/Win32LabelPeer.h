// A static control with text.
#pragma once

#include "ui/window/win32/Win32ChildPeer.h"

namespace tb {

class Win32LabelPeer : public Win32ChildPeer<WindowPeer> {
public:
    // Error 51.
    Win32LabelPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box, bool useMnemonic)
        // Without SS_NOTIFY the mouse would not find it, and it had no tip.
        : Win32ChildPeer(system, form, box,
                         {L"STATIC", SS_LEFT | SS_NOTIFY | WS_GROUP | (useMnemonic ? DWORD{0} : DWORD{SS_NOPREFIX})}) {}
};

}  // namespace tb
