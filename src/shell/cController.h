// Counts the long jobs that run on the one thread, so that exit waits for them and none begins after it was asked for.
#pragma once

#include <cstdint>

#include "base/event.h"
#include "base/log.h"
#include "submissions/StatusUpdate.h"

namespace tb {

class cController : public Activities {
public:
    // Each change worth a line.
    Event<Text, LogLevel> LogMessage;
    // Exit may proceed. Raised inside the operation that made it so, and again at every later end of an activity that
    // leaves the count at zero once an exit had to wait.
    Event<> Shutdown;

    std::int16_t ActivityCount() const { return m_ActivityCount; }

    bool NeedToExit() const { return m_NeedToExit; }
    // Asking raises Shutdown at once when nothing runs. Taking it back keeps an exit that was deferred on record.
    void NeedToExit(bool need);

    // True when the activity may run; its owner then ends it with EndActivity. False once exit has been asked for: the
    // owner does nothing and ends nothing. Error 6 beyond 32767 activities.
    bool StartActivity(const Text& name, bool logIt) override;
    void EndActivity(const Text& name, bool logIt) override;

    bool CanExit() const { return m_ActivityCount == 0; }

    // Whether the user must confirm the exit.
    bool ConfirmExit() const { return m_ConfirmExit; }
    void ConfirmExit(bool confirm);

private:
    void Log(const Text& message) const { LogMessage.Raise(message, LogLevel::Debug); }

    std::int16_t m_ActivityCount = 0;
    bool m_NeedToExit = false;
    bool m_ConfirmExit = false;
    bool m_ShutdownDeferred = false;
};

}  // namespace tb
