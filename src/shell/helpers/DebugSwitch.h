// The hidden setting that turns on debug mode.
#pragma once

#include <cstdint>
#include <memory>

#include "ui/settings/xmlINI.h"

namespace tb {

// The key of the setting in section "MAIN": eight letters, put together while the program runs.
Text DebugSwitch();

// Debug mode is on: settings exist and the switch is another text than "0", which is its default. Cheap enough for
// every line: the state is read again only after a setting was written. The program has one: App::Debug.
class DebugMode {
public:
    // The place where settings come and go; it outlives the object.
    explicit DebugMode(const std::shared_ptr<xmlINI>& settings) : m_Settings(settings) {}
    bool IsOn();

private:
    const std::shared_ptr<xmlINI>& m_Settings;
    // Those that were read, for comparison only.
    const xmlINI* m_Read = nullptr;
    std::uint64_t m_Revision = 0;
    bool m_IsOn = false;
};

}  // namespace tb
