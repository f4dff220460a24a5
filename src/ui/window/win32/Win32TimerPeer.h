// A timer whose ticks are messages of its form's window: WM_TIMER with the timer's number, from 1 on in the order in
// which the form's timers were made.
#pragma once

#include "ui/window/win32/Win32FormPeer.h"

namespace tb {

class Win32TimerPeer : public TimerPeer {
public:
    Win32TimerPeer(Win32FormPeer& form, UINT_PTR id, TimerEvents& events) : m_Form(form), m_Id(id), m_Events(events) {}
    Win32TimerPeer(const Win32TimerPeer&) = delete;
    Win32TimerPeer& operator=(const Win32TimerPeer&) = delete;
    ~Win32TimerPeer() override { Win32TimerPeer::Stop(); }

    // Error 51 when the system has no timer left.
    void Start(std::int32_t milliseconds) override;
    void Stop() override;

private:
    Win32FormPeer& m_Form;
    UINT_PTR m_Id;
    TimerEvents& m_Events;
};

}  // namespace tb
