#include "urlcheck/UpdateStatistics.h"

#include "base/numbers.h"

namespace tb {

UpdateStatistics::UpdateStatistics(Clock& clock, LogSink& log)
    : m_Clock(clock), m_Log(log), m_Date(clock.Now().Day()) {}

void UpdateStatistics::EvilAdded(std::int32_t added, std::int32_t removed) {
    const Date now = m_Clock.Now();
    if (now > m_Date.PlusSeconds(Date::SecondsPerDay)) {
        m_Date = now.Day();
        m_Added = 0;
        m_Removed = 0;
    }
    m_Added = NarrowToInt32(std::int64_t{m_Added} + added);
    m_Removed = NarrowToInt32(std::int64_t{m_Removed} + removed);
    m_Log.WriteLog("***Display Statistics " + FormatDate(m_Date) + " +" + std::to_string(m_Added) + " -" +
                       std::to_string(m_Removed),
                   LogLevel::Debug);
}

}  // namespace tb
