// How many sites the day's updates of the list added and removed. The figures go to the log only.
#pragma once

#include <cstdint>

#include "base/log.h"
#include "platform/Clock.h"

namespace tb {

class UpdateStatistics {
public:
    // The counters belong to today.
    UpdateStatistics(Clock& clock, LogSink& log);

    // Counts one update and writes the line. More than a day after the date of the counters they begin anew. Error 6
    // when a counter would leave 32 bits.
    void EvilAdded(std::int32_t added, std::int32_t removed);

private:
    Clock& m_Clock;
    LogSink& m_Log;
    Date m_Date;
    std::int32_t m_Added = 0;
    std::int32_t m_Removed = 0;
};

}  // namespace tb
