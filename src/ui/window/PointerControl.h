// A control that tells what the mouse does on it.
#pragma once

#include "ui/window/Control.h"

namespace tb {

class PointerControl : public VisualControl, private PointerEvents {
public:
    // Places are relative to the inner corner of the control. While it has the capture, they may lie outside.
    Event<MouseButton, const TwipPoint&> MouseDownEvent;
    Event<MouseButton, const TwipPoint&> MouseUpEvent;
    Event<const TwipPoint&> MouseMoveEvent;
    // The mouse is over it no more; not raised while it has the capture.
    Event<> MouseLeaveEvent;
    // The capture has been taken by another window.
    Event<> CaptureLostEvent;

    std::shared_ptr<void> KeepAlive() override { return Control::KeepAlive(); }

protected:
    using VisualControl::VisualControl;

    PointerEvents& Pointer() { return *this; }

private:
    void Pressed(MouseButton button, const TwipPoint& at) override { MouseDownEvent.Raise(button, at); }
    void Released(MouseButton button, const TwipPoint& at) override { MouseUpEvent.Raise(button, at); }
    void Moved(const TwipPoint& at) override { MouseMoveEvent.Raise(at); }
    void WentAway() override { MouseLeaveEvent.Raise(); }
    void CaptureLost() override { CaptureLostEvent.Raise(); }
};

}  // namespace tb
