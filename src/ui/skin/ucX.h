// The close box of a caption bar: four pictures, of which the mouse and the window's look choose one. It is painted
// over what lies beneath it, so that clear pixels of a picture show the bar.
#pragma once

#include <array>

#include "ui/window/UserControl.h"

namespace tb {

class ucX : public UserControl {
public:
    // 18 pixels wide and high at 96 dots an inch, without pictures.
    explicit ucX(const ControlPlace& place);

    static const ControlClass& StaticClass();
    const ControlClass& Class() const override { return StaticClass(); }

    // Takes the size of the first picture, if there is one, and shows it. Where a picture is missing, a cross is drawn
    // in ForeColor.
    void Setup(const PictureRef& normal, const PictureRef& mouseDown, const PictureRef& mouseOver,
               const PictureRef& inactive);
    // Show the normal picture and the inactive one.
    void Active() { Show(Look::Normal); }
    void InActive() { Show(Look::Inactive); }
    // What lies beneath: a control beside it or the one that holds it, null for nothing but BackColor. It must outlive
    // this one. Who draws on it calls Redraw.
    void SetGround(const DrawnControl* ground);
    void Redraw();

    // A press of the left button in the box was released in it.
    Event<> ClickEvent;

    void MakePeer(FormPeer& form) override;

private:
    enum class Look { Normal, MouseDown, MouseOver, Inactive };

    void Show(Look look);
    void Follow(const TwipPoint& at);
    void Press(MouseButton button);
    void Release(MouseButton button, const TwipPoint& at);
    // Ends what the mouse has begun.
    void Leave();
    bool Holds(const TwipPoint& at) const;
    void DrawGround(tb::Surface& surface, const PixelRect& whole);
    void DrawCross(tb::Surface& surface, const PixelRect& whole) const;

    // By look.
    std::array<PictureRef, 4> m_Pictures;
    Look m_Look = Look::Normal;
    bool m_MouseIsOver = false;
    bool m_IsPressed = false;
    const DrawnControl* m_Ground = nullptr;
};

}  // namespace tb
