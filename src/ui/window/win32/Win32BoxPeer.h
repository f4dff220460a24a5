// A window that holds others and passes on to the form what they tell.
#pragma once

#include "ui/window/win32/Win32ChildPeer.h"
#include "ui/window/win32/Win32DrawnPeer.h"

namespace tb {

class Win32BoxPeer : public Win32DrawnPeer<Win32ChildPeer<BoxPeer>> {
public:
    // Error 51.
    Win32BoxPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box, PointerEvents& pointer,
                 bool hasBorder);

    void SetTabStop(bool tabStop) override;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    static const wchar_t* RegisteredClass();
    void OnSystemColors() override { m_Canvas->OnSystemColors(); }
    // True when the message is dealt with.
    bool Dispatch(UINT message, WPARAM wParam);
};

}  // namespace tb
