// Raises an event again and again while it is enabled and its form is loaded.
#pragma once

#include "ui/window/Control.h"

namespace tb {

class Timer : public Control, private TimerEvents {
public:
    // Disabled, without an interval.
    explicit Timer(const ControlPlace& place);

    static const ControlClass& StaticClass();
    const ControlClass& Class() const override { return StaticClass(); }
    std::shared_ptr<void> KeepAlive() override { return Control::KeepAlive(); }

    // Each interval. A handler that serves messages may be entered again; ticks that were missed are not made up for.
    Event<> TimerEvent;

    // Milliseconds, 0 to 65535, 0 for no ticks; error 380 for others. Setting it starts the interval anew.
    std::int32_t Interval() const { return m_Interval; }
    void SetInterval(std::int32_t milliseconds);
    bool Enabled() const { return m_Enabled; }
    void SetEnabled(bool enabled);

    // What the system does when an interval has passed; a test drives the timer with it. Nothing happens while the
    // timer is disabled or has no interval.
    void Tick() override;

    void MakePeer(FormPeer& form) override;
    void DropPeer() noexcept override { m_Peer.reset(); }

private:
    void Apply();

    std::int32_t m_Interval = 0;
    bool m_Enabled = false;
    std::unique_ptr<TimerPeer> m_Peer;
};

}  // namespace tb
