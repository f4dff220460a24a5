#include "shell/cController.h"

#include "base/numbers.h"

namespace tb {

void cController::NeedToExit(bool need) {
    m_NeedToExit = need;
    Log("Controller NeedToExit = " + ToText(need));
    if (!need) return;
    if (m_ActivityCount == 0) return Shutdown.Raise();
    m_ShutdownDeferred = true;
    Log("Controller.NeedToExit: Deferring shutdown.");
}

bool cController::StartActivity(const Text& name, bool logIt) {
    if (m_NeedToExit) {
        Log("Controller StartActivity DECLINED: " + name);
        return false;
    }
    m_ActivityCount = NarrowToInt16(m_ActivityCount + 1);
    if (logIt) Log("Controller StartActivity (Count = " + std::to_string(m_ActivityCount) + "): " + name);
    return true;
}

void cController::EndActivity(const Text& name, bool logIt) {
    if (m_ActivityCount < 1) {
        Log("Controller EndActivity UNDERRUN: " + name);
    } else {
        --m_ActivityCount;
        if (logIt) Log("Controller EndActivity (Count = " + std::to_string(m_ActivityCount) + "): " + name);
    }
    // The last statement: whoever hears it may take the program apart.
    if (m_ActivityCount == 0 && m_ShutdownDeferred) Shutdown.Raise();
}

void cController::ConfirmExit(bool confirm) {
    m_ConfirmExit = confirm;
    Log("Controller ConfirmExit = " + ToText(confirm));
}

}  // namespace tb
