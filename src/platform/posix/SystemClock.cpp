#include "platform/posix/SystemClock.h"

namespace tb {

Date LocalDate(std::time_t moment) {
    std::tm local{};
    localtime_r(&moment, &local);
    return Date(static_cast<std::int64_t>(moment) + local.tm_gmtoff);
}

Date SystemClock::Now() { return LocalDate(std::time(nullptr)); }

}  // namespace tb
