// What a start without the defaults data has missed, made up for while the program runs: no service can be reached
// without the servers that they name. Once the defaults have come, so does what hangs on them. A program whose start
// had its defaults asks nothing here. Thread: the user-interface thread. The waits for the network serve messages: the
// exit may have taken the settings when an operation returns. The object itself must outlive them.
#pragma once

#include <set>

#include "base/event.h"
#include "refdata/ServiceAccess.h"
#include "shell/SiteTables.h"

namespace tb {

// Between tries: none before the first, then a minute, and twice as long each time up to a quarter of an hour. By a
// clock that somebody may set.
class GrowingPause {
public:
    bool IsOver(const Date& now) const;
    void Begin(const Date& now);

private:
    std::optional<Date> m_Begun;
    std::int64_t m_Seconds = 0;
};

class LateDefaults {
public:
    // All that is named outlives the object.
    LateDefaults(ServiceAccess access, SiteTables& tables)
        : m_Lines(access.Log), m_Access{access.Program, m_Lines, std::move(access.MakeSender)}, m_Tables(tables) {}
    LateDefaults(const LateDefaults&) = delete;
    LateDefaults& operator=(const LateDefaults&) = delete;

    // Defaults have come; raised before anything else is asked of the network.
    Event<> Changed;

    // Whether the settings have the global SERVERS. Without it the defaults are tried first, when the pause since the
    // last try is over or the machine has come online since; with them the reference data, as often as it takes to get
    // a server's. What is missing is one line of level 0 as long as it is the same. False when the settings have gone.
    bool HasServers();

    // The machine was found offline at some look and is online now, and something is missing: a try need not wait for
    // the next cycle. To be asked often.
    bool IsBackOnline();

    // After defaults have come, once: the start's gate of EXPIREVER and WARNVER, which may ask the user. True when the
    // program must not go on running.
    bool StopsForVersions();

private:
    // Writes a line of level 0 once, and a debug line whenever it comes again: tries fail alike for hours.
    class LinesOnce : public LogSink {
    public:
        explicit LinesOnce(LogSink& log) : m_Log(log) {}
        void WriteLog(const Text& message, LogLevel level) noexcept override;

    private:
        LogSink& m_Log;
        std::set<Text> m_Written;
    };

    bool KnowsServers() const;
    bool IsWaiting() const { return m_Access.Program.Settings && (m_NeedsReference || !KnowsServers()); }
    void TryDefaults();
    void TryReference();
    bool HasFile(const char* name) const;
    void Say(const Text& line) { m_Lines.WriteLog(line, LogLevel::Always); }

    LinesOnce m_Lines;
    ServiceAccess m_Access;
    SiteTables& m_Tables;
    GrowingPause m_Pause;
    bool m_WasOffline = false;
    bool m_NeedsReference = false;
    bool m_OwesVersions = false;
};

}  // namespace tb
