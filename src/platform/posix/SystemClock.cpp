#include "platform/posix/SystemClock.h"

#include <ctime>

namespace tb {

Date SystemClock::Now() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return Date(static_cast<std::int64_t>(now) + local.tm_gmtoff);
}

}  // namespace tb
