// A moment of local time, to the second, and its texts.
#pragma once

#include <compare>
#include <cstdint>

#include "base/text.h"

namespace tb {

struct CivilDate {
    int Year = 1970;
    int Month = 1;
    int Day = 1;
    int Hour = 0;
    int Minute = 0;
    int Second = 0;
};

// Seconds of the local calendar since 1 January 1970, without leap seconds and without a time zone. Ages are
// differences of whole seconds, so that a limit of days is met exactly.
class Date {
public:
    static constexpr std::int64_t SecondsPerDay = 86400;

    Date() = default;
    explicit Date(std::int64_t seconds) : m_Seconds(seconds) {}
    // Error 13 when a part is out of its range (years 100 to 9999, days by the length of the month).
    explicit Date(const CivilDate& civil);

    std::int64_t Seconds() const { return m_Seconds; }
    CivilDate Civil() const;
    // The same day at midnight.
    Date Day() const;
    Date PlusSeconds(std::int64_t seconds) const { return Date(m_Seconds + seconds); }

    // NOLINTNEXTLINE(modernize-use-nullptr): the check takes the compiler's own comparison with zero for a pointer
    auto operator<=>(const Date&) const = default;

private:
    std::int64_t m_Seconds = 0;
};

// The two separators that the user's locale puts into dates and times.
struct DateSeparators {
    char OfDate = '/';
    char OfTime = ':';
};

// "MM/DD/YYYY HH:MM:SS", each number with leading zeros, with the separators given.
Text FormatDateTime(const Date& date, const DateSeparators& separators = {});

// "MM/DD/YYYY".
Text FormatDate(const Date& date, const DateSeparators& separators = {});

// Reads month, day, year and, if they are there, hour, minute and second; anything that is no digit separates. Error 13
// for fewer than three or more than six numbers, or a number out of its range.
Date ParseDate(TextView text);

}  // namespace tb
