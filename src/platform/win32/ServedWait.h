// Waiting for events of the system with the messages of the calling thread served meanwhile.
#pragma once

#include <windows.h>

#include <chrono>
#include <cstdint>
#include <functional>

namespace tb {

// A row of waits under one limit.
class ServedWait {
public:
    enum class End {
        Signalled,
        TimedOut,       // this wait
        WholeTimedOut,  // the row
        Cancelled,
        Quit,  // the end of the message loop is due
    };

    // The time runs from here on. `isCancelled`, which may be empty, is asked at least every 50 ms unless a handler of
    // a message takes longer.
    ServedWait(std::int32_t wholeMilliseconds, std::function<bool()> isCancelled);

    // Handlers run inside, and may wait in the same way: those waits end first. An event that is signalled by then ends
    // this one well, however long they took. Messages are served at least once, even if the event is signalled already.
    End For(HANDLE event, std::int32_t milliseconds) const;

private:
    using Clock = std::chrono::steady_clock;

    Clock::time_point m_WholeEnd;
    std::function<bool()> m_IsCancelled;
};

}  // namespace tb
