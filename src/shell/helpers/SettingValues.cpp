#include "shell/helpers/SettingValues.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "sitedb/codec/UrlEncode.h"

namespace tb {

namespace {

constexpr const char* NotFound = "**NOTFOUND**";

ElementPtr Default(const App& app, TextView section, TextView attribute, TextView value) {
    return app.Settings ? app.Settings->TryGlobalsElement(section, attribute, value) : nullptr;
}

}  // namespace

Text GetSetting(const App& app, TextView section, TextView key, const Text& otherwise) {
    return app.Settings ? app.Settings->GetXMLString(section, key, otherwise) : otherwise;
}

bool IsSoundEnabled(const App& app) { return GetSetting(app, "MAIN", "SOUND", "0") == "1"; }

Text GetGlobalBody(const App& app, TextView section, TextView attribute, TextView value) {
    const ElementPtr element = Default(app, section, attribute, value);
    return element ? element->Body() : Text();
}

Text GetDefaultedString(const App& app, TextView section, TextView key) {
    const Text value = GetSetting(app, section, UpperCase(key), NotFound);
    return value == NotFound ? GetGlobalBody(app, section, "NAME", UpperCase(key)) : value;
}

std::int32_t GetDefaultedLong(const App& app, TextView section, TextView key, std::int32_t otherwise) {
    Text value = GetSetting(app, section, UpperCase(key), NotFound);
    if (value == NotFound) {
        const ElementPtr element = Default(app, section, "NAME", UpperCase(key));
        if (!element) return otherwise;
        value = element->Body();
    }
    return TrapOr(
        0, [&] { return ToInt32(value); }, [](const RuntimeError&) { /* no number counts as 0 */ });
}

std::int32_t GetTimerInterval(const App& app, TextView name, std::int32_t defaultSeconds) {
    constexpr std::int64_t perSecond = 1000;
    return TrapOr(
        static_cast<std::int32_t>(defaultSeconds * perSecond),
        [&] {
            std::int32_t seconds = ToInt32(GetSetting(app, "TIMERS", UpperCase(name), "-1"));
            if (seconds == -1) seconds = ToInt32(GetGlobalBody(app, "TIMERS", "NAME", UpperCase(name)));
            return NarrowToInt32(seconds * perSecond);
        },
        [](const RuntimeError&) { /* the caller's own */ });
}

bool IsTimerEnabled(const App& app, TextView name) { return GetSetting(app, "TIMERS", UpperCase(name), "1") == "1"; }

Text TimerLine(const Text& name, std::int32_t period, bool enabled) {
    return name + " Timer " + ToText(static_cast<double>(period) / TimerTick) + " seconds" +
           (enabled ? "" : ", DISABLED");
}

Text GetClientKey(const App& app, bool encoded) {
    const Text key = GetSetting(app, "MAIN", "KEY", "");
    return encoded ? UrlEncode(key) : key;
}

}  // namespace tb
