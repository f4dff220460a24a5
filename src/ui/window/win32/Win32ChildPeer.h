// What the windows inside a form have in common.
#pragma once

#include "ui/window/win32/Win32FormPeer.h"

namespace tb {

// How a window inside a form is made. All but option buttons have WS_GROUP: the arrow keys go round among those between
// two of them.
struct ChildStyle {
    const wchar_t* ClassName;
    DWORD Style;
    DWORD Extended = 0;
};

// The window of a box.
HWND BoxWindow(BoxPeer& box);
// A hidden window of the form, or of a box of it, with the program's font. Error 51.
OwnedWindow MakeChild(const Win32WindowSystem& system, const Win32FormPeer& form, BoxPeer* box, const ChildStyle& style,
                      void* object = nullptr);

template <typename Base>
class Win32ChildPeer : public Win32Peer<Base>, protected Win32Child {
public:
    ~Win32ChildPeer() override { m_Form.RemoveChild(this->Handle()); }

    void SetVisible(bool visible) override { ShowWindow(this->Handle(), visible ? SW_SHOWNA : SW_HIDE); }
    void SetToolTip(const Text& text) override { m_Form.SetTip(this->Handle(), text); }

protected:
    // `form` must outlive the child.
    Win32ChildPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box, const ChildStyle& style,
                   void* object = nullptr)
        : Win32Peer<Base>(system), m_Form(form) {
        this->m_Window = MakeChild(system, form, box, style, object);
        m_Form.AddChild(this->Handle(), *this);
    }

    HBRUSH OnColor(HDC context) override { return this->Colored(context); }

    Win32FormPeer& m_Form;
};

}  // namespace tb
