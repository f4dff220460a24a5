#include "base/date.h"

#include <cstdio>
#include <vector>

#include "base/errors.h"

namespace tb {

namespace {

// Days since 1 January 1970 in the proleptic Gregorian calendar, counted in eras of 400 years that begin in March.
std::int64_t DaysFromCivil(int year, int month, int day) {
    const int shifted = month <= 2 ? year - 1 : year;
    const int era = (shifted >= 0 ? shifted : shifted - 399) / 400;
    const int yearOfEra = shifted - era * 400;
    const int dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return static_cast<std::int64_t>(era) * 146097 + dayOfEra - 719468;
}

void CivilFromDays(std::int64_t days, CivilDate& civil) {
    days += 719468;
    const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
    const int dayOfEra = static_cast<int>(days - era * 146097);
    const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int shiftedMonth = (5 * dayOfYear + 2) / 153;
    civil.Day = dayOfYear - (153 * shiftedMonth + 2) / 5 + 1;
    civil.Month = shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9;
    civil.Year = yearOfEra + static_cast<int>(era) * 400 + (civil.Month <= 2 ? 1 : 0);
}

int DaysInMonth(int year, int month) {
    return static_cast<int>(month == 12 ? 31 : DaysFromCivil(year, month + 1, 1) - DaysFromCivil(year, month, 1));
}

void Require(int value, int lowest, int highest) {
    if (value < lowest || value > highest) throw Error(ErrorNumber::TypeMismatch);
}

std::int64_t FloorDay(std::int64_t seconds) {
    const std::int64_t rest = seconds % Date::SecondsPerDay;
    return seconds - (rest < 0 ? rest + Date::SecondsPerDay : rest);
}

}  // namespace

Date::Date(const CivilDate& civil) {
    Require(civil.Year, 100, 9999);
    Require(civil.Month, 1, 12);
    Require(civil.Day, 1, DaysInMonth(civil.Year, civil.Month));
    Require(civil.Hour, 0, 23);
    Require(civil.Minute, 0, 59);
    Require(civil.Second, 0, 59);
    const int seconds = civil.Hour * 3600 + civil.Minute * 60 + civil.Second;
    m_Seconds = DaysFromCivil(civil.Year, civil.Month, civil.Day) * SecondsPerDay + seconds;
}

CivilDate Date::Civil() const {
    CivilDate civil;
    const std::int64_t midnight = FloorDay(m_Seconds);
    CivilFromDays(midnight / SecondsPerDay, civil);
    const int rest = static_cast<int>(m_Seconds - midnight);
    civil.Hour = rest / 3600;
    civil.Minute = rest / 60 % 60;
    civil.Second = rest % 60;
    return civil;
}

Date Date::Day() const { return Date(FloorDay(m_Seconds)); }

Text FormatDateTime(const Date& date, const DateSeparators& separators) {
    const CivilDate civil = date.Civil();
    char time[40];
    std::snprintf(time, sizeof time, " %02d%c%02d%c%02d", civil.Hour, separators.OfTime, civil.Minute,
                  separators.OfTime, civil.Second);
    return FormatDate(date, separators) + time;
}

Text FormatDate(const Date& date, const DateSeparators& separators) {
    const CivilDate civil = date.Civil();
    char text[40];
    std::snprintf(text, sizeof text, "%02d%c%02d%c%04d", civil.Month, separators.OfDate, civil.Day, separators.OfDate,
                  civil.Year);
    return text;
}

Date ParseDate(TextView text) {
    std::vector<int> numbers;
    bool inNumber = false;
    for (const char character : text) {
        const bool digit = character >= '0' && character <= '9';
        if (digit && !inNumber) numbers.push_back(0);
        if (digit) {
            numbers.back() = numbers.back() * 10 + (character - '0');
            Require(numbers.back(), 0, 9999);
        }
        inNumber = digit;
    }
    if (numbers.size() < 3 || numbers.size() > 6) throw Error(ErrorNumber::TypeMismatch);
    numbers.resize(6);
    return Date(CivilDate{numbers[2], numbers[0], numbers[1], numbers[3], numbers[4], numbers[5]});
}

}  // namespace tb
