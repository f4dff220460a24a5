// The hidden setting that turns on debug mode.
#pragma once

#include <cstdint>

#include "shell/helpers/App.h"

namespace tb {

// The key of the setting in section "MAIN": eight letters, put together while the program runs.
Text DebugSwitch();

// Debug mode is on: settings exist and the switch is another text than "0", which is its default. Cheap enough for
// every line: the state is read again only after a setting was written.
class DebugMode {
public:
    explicit DebugMode(const App& app) : m_App(app) {}
    bool IsOn();

private:
    const App& m_App;
    const xmlINI* m_Settings = nullptr;
    std::uint64_t m_Revision = 0;
    bool m_IsOn = false;
};

}  // namespace tb
