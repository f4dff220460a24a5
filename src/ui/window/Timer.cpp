#include "ui/window/Timer.h"

#include "ui/window/ControlErrors.h"
#include "ui/window/ControlTable.h"

namespace tb {

Timer::Timer(const ControlPlace& place) : Control(place) {}

const ControlClass& Timer::StaticClass() {
    static const ControlClass table("Timer", &Control::StaticClass(),
                                    {
                                        Property<&Timer::Interval, &Timer::SetInterval>("Interval"),
                                        Property<&Timer::Enabled, &Timer::SetEnabled>("Enabled"),
                                    });
    return table;
}

void Timer::SetInterval(std::int32_t milliseconds) {
    if (milliseconds < 0 || milliseconds > 65535) throw Error(ControlErrorNumber::InvalidValue);
    m_Interval = milliseconds;
    Apply();
}

void Timer::SetEnabled(bool enabled) {
    if (m_Enabled == enabled) return;
    m_Enabled = enabled;
    Apply();
}

void Timer::Tick() {
    if (m_Enabled && m_Interval > 0) TimerEvent.Raise();
}

void Timer::MakePeer(FormPeer& form) {
    m_Peer = form.MakeTimer(*this);
    Apply();
}

void Timer::Apply() {
    if (!m_Peer) return;
    if (m_Enabled && m_Interval > 0) {
        m_Peer->Start(m_Interval);
    } else {
        m_Peer->Stop();
    }
}

}  // namespace tb
