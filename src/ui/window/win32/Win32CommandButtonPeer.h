// A push button: the system's in what it does, drawn here.
#pragma once

#include "ui/window/ButtonLook.h"
#include "ui/window/win32/Win32ChildPeer.h"
#include "ui/window/win32/Win32Subclass.h"

namespace tb {

class Win32CommandButtonPeer final : public Win32ChildPeer<CommandButtonPeer>, private Win32Subclass {
public:
    // Error 51.
    Win32CommandButtonPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box, ButtonEvents& events);
    ~Win32CommandButtonPeer() override;

    void SetDefault(bool isDefault) override;
    void SetCancel(bool isCancel) override;

private:
    bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
    void OnCommand(WORD code) override;
    void OnDraw(const DRAWITEMSTRUCT& item) override;
    bool TakesEnter() const override { return true; }
    void SetHot(bool hot);
    ButtonState State(UINT itemState) const;
    void DrawCaption(HDC context, const RECT& face, Color color) const;

    ButtonEvents& m_Events;
    // The mouse is over it.
    bool m_IsHot = false;
};

}  // namespace tb
