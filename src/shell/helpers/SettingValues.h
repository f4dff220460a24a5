// Values that the settings decide, or in their place the defaults data. Where nothing else is said they do not fail.
#pragma once

#include "shell/helpers/App.h"

namespace tb {

// A setting, or `otherwise` when it is absent or empty, and when there are no settings any more.
Text GetSetting(const App& app, TextView section, TextView key, const Text& otherwise);

// The setting "SOUND" is "1".
bool IsSoundEnabled(const App& app);

// The text of the element that carries the attribute with the value in a global of the data files; empty when the
// global or the element is missing.
Text GetGlobalBody(const App& app, TextView section, TextView attribute, TextView value);

// A setting, or, when it is absent or empty, the text of that NAME in the defaults data; empty when both are missing.
Text GetDefaultedString(const App& app, TextView section, TextView key);
// The same as a number, `otherwise` when both are missing; 0 for a text that is no number.
std::int32_t GetDefaultedLong(const App& app, TextView section, TextView key, std::int32_t otherwise);

// A period of section "TIMERS" in milliseconds: the setting in seconds, or, when it is absent or -1, that of the
// defaults data. `defaultSeconds` when neither gives a number that fits.
std::int32_t GetTimerInterval(const App& app, TextView name, std::int32_t defaultSeconds);
// The setting of that name in section "TIMERS" is "1", which is its default.
bool IsTimerEnabled(const App& app, TextView name);
// Of the program's timers, in milliseconds.
inline constexpr std::int32_t TimerTick = 1000;
// The line that tells a period, in milliseconds.
Text TimerLine(const Text& name, std::int32_t period, bool enabled);

// The client's identifier that web requests carry, encoded for a form if asked.
Text GetClientKey(const App& app, bool encoded = false);

}  // namespace tb
