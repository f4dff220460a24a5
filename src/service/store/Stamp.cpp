#include "service/store/Stamp.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

#include "base/numbers.h"

namespace tb {

namespace {

Text StampOf(const Date& date) {
    const CivilDate civil = date.Civil();
    char stamp[64];
    std::snprintf(stamp, sizeof stamp, "%04d%02d%02d%02d%02d", civil.Year, civil.Month, civil.Day, civil.Hour,
                  civil.Minute);
    return stamp;
}

Date DateOf(const Text& stamp) {
    const auto part = [&](size_t start, size_t length) { return ToInt32(stamp.substr(start, length)); };
    return Date(CivilDate{part(0, 4), part(4, 2), part(6, 2), part(8, 2), part(10, 2), 0});
}

}  // namespace

Date SystemUtcNow() { return Date(static_cast<std::int64_t>(std::time(nullptr))); }

Text NextStamp(const Text& last, const Date& now) {
    return std::max(StampOf(now), StampOf(DateOf(last).PlusSeconds(60)));
}

}  // namespace tb
