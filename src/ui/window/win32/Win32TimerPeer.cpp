#include "ui/window/win32/Win32TimerPeer.h"

#include "platform/win32/Win32Errors.h"

namespace tb {

void Win32TimerPeer::Start(std::int32_t milliseconds) {
    if (SetTimer(m_Form.Handle(), m_Id, static_cast<UINT>(milliseconds), nullptr) == 0) {
        throw SystemError("SetTimer", GetLastError());
    }
    m_Form.TimerRuns(m_Id, m_Events);
}

void Win32TimerPeer::Stop() {
    KillTimer(m_Form.Handle(), m_Id);
    m_Form.TimerStops(m_Id);
}

}  // namespace tb
