#include "shell/helpers/DebugSwitch.h"

#include "base/pieces.h"

namespace tb {

Text DebugSwitch() { return Piece("Dri") + Piece("ftN") + Piece("et"); }

bool DebugMode::IsOn() {
    const xmlINI* const settings = m_Settings.get();
    // Settings made anew may stand in the same place.
    if (settings == nullptr) m_Read = nullptr;
    if (settings == nullptr) return false;
    if (settings != m_Read || settings->Revision() != m_Revision) {
        m_Read = settings;
        m_Revision = settings->Revision();
        m_IsOn = settings->GetXMLString("MAIN", DebugSwitch(), "0") != "0";
    }
    return m_IsOn;
}

}  // namespace tb
