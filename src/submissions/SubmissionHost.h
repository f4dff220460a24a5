// The program as the parts of SubmissionDB see it: settings, messages to the user, lines of the log.
#pragma once

#include "base/errors.h"
#include "base/event.h"
#include "refdata/ServiceAccess.h"
#include "shell/helpers/Messages.h"
#include "shell/helpers/SettingValues.h"
#include "shell/helpers/ThisProcess.h"

namespace tb {

class SubmissionHost {
public:
    // All of it outlives the object, but for the program's settings. `lines` gets every line for the log.
    SubmissionHost(ServiceAccess service, const Event<Text, LogLevel>& lines)
        : Service(std::move(service)), m_Lines(lines) {}

    const ServiceAccess Service;
    App& Program() const { return Service.Program; }
    tb::Files& Files() const { return Program().System.Files; }
    Date Now() const { return Program().System.Clock.Now(); }
    bool IsDebugMode() const { return Program().Debug.IsOn(); }
    // The default also once the program has let go of its settings.
    Text Setting(TextView section, TextView key, const Text& otherwise) const {
        return tb::GetSetting(Program(), section, key, otherwise);
    }

    void Log(const Text& message, LogLevel level = LogLevel::Always) const { m_Lines.Raise(message, level); }
    void Inform(const Text& message, const Text& title = {}) const {
        ShowMessage(Program(), message, MessageButtons::Information, title);
    }
    void ShowStop(const Text& message) const { ShowMessage(Program(), message, MessageButtons::Critical); }
    void TrimMemory() const { FreeMemory(Program(), Service.Log); }

    // Handlers of traps: a message with the error's number, a message without it, a line.
    auto StoreFailure(const char* prefix) const {
        return [this, prefix](const RuntimeError& error) { ShowStop(prefix + error.Line()); };
    }
    auto DropFailure(const char* prefix) const {
        return [this, prefix](const RuntimeError& error) { ShowStop(prefix + error.Description); };
    }
    auto LogFailure(const char* prefix) const {
        return [this, prefix](const RuntimeError& error) { Log(prefix + error.Description); };
    }

private:
    const Event<Text, LogLevel>& m_Lines;
};

}  // namespace tb
