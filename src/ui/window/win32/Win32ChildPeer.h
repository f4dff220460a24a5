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

// Sets those of a window's style bits that are in `bits` to `value`; `index` is GWL_STYLE or GWL_EXSTYLE.
void ReplaceBits(HWND window, int index, DWORD bits, DWORD value);
// The window of a box.
HWND BoxWindow(BoxPeer& box);
// What is seen beneath a window that stands on the form, or on a box of it.
std::shared_ptr<Win32Canvas> CanvasOf(const Win32FormPeer& form, BoxPeer* box);
// A hidden window of the form, or of a box of it. Error 51.
OwnedWindow MakeChild(const Win32FormPeer& form, BoxPeer* box, const ChildStyle& style, void* object = nullptr);

template <typename Base>
class Win32ChildPeer : public Win32Peer<Base>, protected Win32Child {
public:
    ~Win32ChildPeer() override { m_Form.RemoveChild(this->Handle()); }

    void SetBounds(const TwipRect& bounds) override {
        Win32Peer<Base>::SetBounds(bounds);
        // The system takes along what it showed, and with it the ground of the old place.
        InvalidateRect(this->Handle(), nullptr, TRUE);
    }
    void SetVisible(bool visible) override { ShowWindow(this->Handle(), visible ? SW_SHOWNA : SW_HIDE); }
    void SetToolTip(const Text& text) override { m_Form.SetTip(this->Handle(), text); }

protected:
    // `form` must outlive the child.
    Win32ChildPeer(const Win32WindowSystem& system, Win32FormPeer& form, BoxPeer* box, const ChildStyle& style,
                   void* object = nullptr)
        : Win32Peer<Base>(system), m_Form(form), m_Beneath(CanvasOf(form, box)) {
        this->m_Window = MakeChild(form, box, style, object);
        Win32Peer<Base>::SetFont({});
        m_Form.AddChild(this->Handle(), *this);
    }

    HBRUSH OnColor(HDC context) override { return this->Colored(context); }
    // What is beneath the window, painted into a context whose origin is the window's.
    void PaintBeneath(HDC context, const RECT& area) const {
        POINT corner{};
        MapWindowPoints(this->Handle(), GetParent(this->Handle()), &corner, 1);
        RECT beneath = area;
        OffsetRect(&beneath, static_cast<int>(corner.x), static_cast<int>(corner.y));
        m_Beneath->Paint(context, beneath, corner);
    }

    Win32FormPeer& m_Form;

private:
    std::shared_ptr<Win32Canvas> m_Beneath;
};

}  // namespace tb
