#include "shell/helpers/ThisProcess.h"

#include "base/codepage.h"
#include "shell/helpers/SettingValues.h"
#include "shell/helpers/SystemInfo.h"

namespace tb {

namespace {

// The working set's limits where nothing else is set, in bytes.
constexpr std::int32_t DefaultMinFreeMem = 3145728;
constexpr std::int32_t DefaultMaxFreeMem = 6291456;

}  // namespace

bool IsDevelopmentRun(const App& app) {
    return !app.System.Processes.IsModuleLoaded(PathText(app.System.Processes.Executable().stem()) + ".exe");
}

Text GetSystemErrorText(const App& app, std::uint32_t number) { return app.System.Processes.SystemErrorText(number); }

void FreeMemory(const App& app, LogSink& log) {
    if (!IsWindowsNT(app)) return;
    const std::int32_t minimum = GetDefaultedLong(app, "MAIN", "MinFreeMem", DefaultMinFreeMem);
    const std::int32_t maximum = GetDefaultedLong(app, "MAIN", "MaxFreeMem", DefaultMaxFreeMem);
    if (minimum == 0 && maximum == 0) return;
    const std::uint32_t failure = app.System.Processes.SetWorkingSetSize(minimum, maximum);
    if (failure != 0) log.WriteLog("FreeMemory: " + GetSystemErrorText(app, failure), LogLevel::Always);
}

}  // namespace tb
