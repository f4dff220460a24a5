#include "platform/posix/SystemClock.h"

namespace tb {

Date LocalDate(std::time_t moment) {
    std::tm local{};
    localtime_r(&moment, &local);
    return Date(static_cast<std::int64_t>(moment) + local.tm_gmtoff);
}

std::time_t LocalMoment(const Date& local) {
    const CivilDate civil = local.Civil();
    std::tm parts{};
    parts.tm_year = civil.Year - 1900;
    parts.tm_mon = civil.Month - 1;
    parts.tm_mday = civil.Day;
    parts.tm_hour = civil.Hour;
    parts.tm_min = civil.Minute;
    parts.tm_sec = civil.Second;
    // The zone's rules tell whether that day is in summer time.
    parts.tm_isdst = -1;
    return std::mktime(&parts);
}

Date SystemClock::Now() { return LocalDate(std::time(nullptr)); }

}  // namespace tb
