#include "shell/helpers/GeneralHelpers.h"

#include "base/codepage.h"
#include "base/errors.h"
#include "base/log.h"
#include "base/numbers.h"
#include "shell/helpers/OpenDialog.h"
#include "shell/helpers/SystemInfo.h"
#include "shell/helpers/Versions.h"
#include "shell/helpers/cRegistry.h"
#include "sitedb/codec/UrlEncode.h"

namespace tb {

namespace {

constexpr const char* NotFound = "**NOTFOUND**";

// The working set's limits where nothing else is set, in bytes.
constexpr std::int32_t DefaultMinFreeMem = 3145728;
constexpr std::int32_t DefaultMaxFreeMem = 6291456;

// The system's numbers of its metrics.
constexpr std::int32_t CaptionHeight = 4;
constexpr std::int32_t DialogFrameWidth = 7;
constexpr std::int32_t FrameWidth = 32;
constexpr std::int32_t SmallCaptionHeight = 51;

Text Setting(const App& app, TextView section, TextView key, const Text& otherwise) {
    return app.Settings ? app.Settings->GetXMLString(section, key, otherwise) : otherwise;
}

ElementPtr Default(const App& app, TextView section, TextView attribute, TextView value) {
    return app.Settings ? app.Settings->TryGlobalsElement(section, attribute, value) : nullptr;
}

}  // namespace

bool DirectoryExists(const App& app, const std::filesystem::path& folder) {
    return app.System.Files.FolderExists(folder);
}

void EnsureDirectory(const App& app, const std::filesystem::path& folder) {
    if (!DirectoryExists(app, folder)) app.System.Files.MakeFolder(folder);
}

bool IsSoundEnabled(const App& app) { return Setting(app, "MAIN", "SOUND", "0") == "1"; }

Text GetAppVersion(const App& app) { return app.Product.Version; }

Text GetGlobalBody(const App& app, TextView section, TextView attribute, TextView value) {
    const ElementPtr element = Default(app, section, attribute, value);
    return element ? element->Body() : Text();
}

Text GetDefaultedString(const App& app, TextView section, TextView key) {
    const Text value = Setting(app, section, UpperCase(key), NotFound);
    return value == NotFound ? GetGlobalBody(app, section, "NAME", UpperCase(key)) : value;
}

std::int32_t GetDefaultedLong(const App& app, TextView section, TextView key, std::int32_t otherwise) {
    Text value = Setting(app, section, UpperCase(key), NotFound);
    if (value == NotFound) {
        const ElementPtr element = Default(app, section, "NAME", UpperCase(key));
        if (!element) return otherwise;
        value = element->Body();
    }
    std::int32_t number = 0;
    Trap([&] { number = ToInt32(value); }, [](const RuntimeError&) { /* no number counts as 0 */ });
    return number;
}

std::int32_t GetTimerInterval(const App& app, TextView name, std::int32_t defaultSeconds) {
    constexpr std::int64_t perSecond = 1000;
    std::int32_t milliseconds = 0;
    Trap(
        [&] {
            std::int32_t seconds = ToInt32(Setting(app, "TIMERS", UpperCase(name), "-1"));
            if (seconds == -1) seconds = ToInt32(GetGlobalBody(app, "TIMERS", "NAME", UpperCase(name)));
            milliseconds = NarrowToInt32(seconds * perSecond);
        },
        [&](const RuntimeError&) { milliseconds = static_cast<std::int32_t>(defaultSeconds * perSecond); });
    return milliseconds;
}

bool IsTimerEnabled(const App& app, TextView name) { return Setting(app, "TIMERS", UpperCase(name), "1") == "1"; }

Text TimerLine(const Text& name, std::int32_t period, bool enabled) {
    return name + " Timer " + ToText(static_cast<double>(period) / TimerTick) + " seconds" +
           (enabled ? "" : ", DISABLED");
}

Text GetClientKey(const App& app, bool encoded) {
    const Text key = Setting(app, "MAIN", "KEY", "");
    return encoded ? UrlEncode(key) : key;
}

std::int32_t ShowMessage(const App& app, const Text& prompt, std::int32_t buttons, const Text& title) {
    const OpenDialog open(app);
    return app.System.Dialogs.ShowMessage(prompt, buttons, title.empty() ? app.Product.ProductName : title);
}

bool ShellOpen(const App& app, const Text& target) { return app.System.Shell.Open(target); }

bool IsComponentOutOfDate(const App& app, const Text& name, const Text& version, const Date& date) {
    if (!app.System.Files.Exists(app.Path() / TextPath(name))) return true;
    if (!app.Components) throw Error(ErrorNumber::ObjectNotSet);
    const ComponentRecord& record = app.Components->Item(name);
    if (record.VERSION.empty() || record.VERSION == "0.0.0") {
        return !record.MODIFIEDDATE || date > *record.MODIFIEDDATE;
    }
    return IsVersionNewerThan(version, record.VERSION, false);
}

bool IsWindowsNT(const App& app) { return IsWindowsNT(SystemInfo(app.System.Machine).GetWindowsVersion()); }

bool IsWindows2000OrLater(const App& app) {
    return IsWindows2000OrLater(SystemInfo(app.System.Machine).GetWindowsVersion());
}

WindowPosition RestoreWindowPosition(const App& app, TextView section, const WindowExtent& window,
                                     std::optional<double> defaultTop, std::optional<double> defaultLeft) {
    const Machine::ScreenState state = app.System.Machine.Screen();
    const WindowExtent screen{static_cast<double>(state.Width) * state.TwipsPerPixel,
                              static_cast<double>(state.Height) * state.TwipsPerPixel};
    const auto stored = [&](TextView key, double fallback) {
        const Text text = Setting(app, section, key, "");
        return text.empty() ? fallback : ToDouble(text);
    };
    const WindowPosition position{stored("LastTop", defaultTop.value_or((screen.Height - window.Height) / 2)),
                                  stored("LastLeft", defaultLeft.value_or((screen.Width - window.Width) / 2))};
    return KeptReachable(position, window, screen);
}

bool IsDevelopmentRun(const App& app) {
    return !app.System.Processes.IsModuleLoaded(PathText(app.System.Processes.Executable().stem()) + ".exe");
}

FormBorderMetrics GetFormBorderMetrics(const App& app, std::int32_t borderStyle) {
    Machine& machine = app.System.Machine;
    const auto metrics = [&](std::int32_t width, std::int32_t height) {
        const std::int32_t twips = machine.Screen().TwipsPerPixel;
        return FormBorderMetrics{machine.Metric(width) * twips, machine.Metric(height) * twips};
    };
    switch (borderStyle) {
    case 1:
    case 3: return metrics(DialogFrameWidth, CaptionHeight);
    case 2: return metrics(FrameWidth, CaptionHeight);
    case 4: return metrics(DialogFrameWidth, SmallCaptionHeight);
    case 5: return metrics(FrameWidth, SmallCaptionHeight);
    default: return {};
    }
}

Text GetBrowserVersion(const App& app) {
    return cRegistry(app.System.Registry)
        .ValueEx(RegistryRoot::LocalMachine, "Software\\Microsoft\\Internet Explorer", "Version", "");
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
