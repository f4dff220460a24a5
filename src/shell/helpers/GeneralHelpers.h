// The small helpers that every part of the program calls by name. Where nothing else is said they do not fail.
#pragma once

#include "base/log.h"
#include "shell/helpers/App.h"
#include "shell/helpers/WindowPosition.h"

namespace tb {

bool DirectoryExists(const App& app, const std::filesystem::path& folder);
// Makes a folder that is not there, one level of it. Raises what making it raises.
void EnsureDirectory(const App& app, const std::filesystem::path& folder);

// The setting "SOUND" is "1".
bool IsSoundEnabled(const App& app);

// "major.minor.revision" of the running program.
Text GetAppVersion(const App& app);

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

// A modal message, which counts as an OpenDialog; an empty title becomes the product's name. The number of the button
// pressed.
std::int32_t ShowMessage(const App& app, const Text& prompt, std::int32_t buttons, const Text& title = {});

bool ShellOpen(const App& app, const Text& target);

// The component `name` must be replaced by one of this version and date (local time): it is not in the program folder,
// or older by its version, or, without a version, by its date. Error 5 for a file that is there and has no record, 91
// before the records exist.
bool IsComponentOutOfDate(const App& app, const Text& name, const Text& version, const Date& date);

bool IsWindowsNT(const App& app);
bool IsWindows2000OrLater(const App& app);

// Where a window of that size was left, "LastTop" and "LastLeft" of a section, so far on the screen that it can be
// reached; where nothing is stored the default, which is the middle of the screen if it is not given. All in twips.
// Raises 13 for a stored text that is no number.
WindowPosition RestoreWindowPosition(const App& app, TextView section, const WindowExtent& window,
                                     std::optional<double> defaultTop = {}, std::optional<double> defaultLeft = {});

// The program does not run as its own executable.
bool IsDevelopmentRun(const App& app);

struct FormBorderMetrics {
    std::int32_t Width = 0;
    std::int32_t CaptionHeight = 0;
};
// Border width and caption height of a window by its border style, in twips; zero for style 0.
FormBorderMetrics GetFormBorderMetrics(const App& app, std::int32_t borderStyle);

// Of the system's browser; empty when it is not known.
Text GetBrowserVersion(const App& app);

// The system's text for an error number of its own.
Text GetSystemErrorText(const App& app, std::uint32_t number);

// Trims the process's working set to the limits of the settings, on the NT family; both 0 switches it off. A refusal is
// one line of level 0 on `log`.
void FreeMemory(const App& app, LogSink& log);

}  // namespace tb
