// The clock of Windows.
#pragma once

#include <windows.h>

#include "platform/Clock.h"

namespace tb {

// A moment of the system, which counts in UTC, as local time.
Date LocalDate(const FILETIME& moment);

// A local or a universal time as a moment of the system. Error 5 before the year 1601, where the system begins to
// count.
FILETIME Moment(const Date& date, bool local);

class Win32Clock : public Clock {
public:
    Date Now() override;
};

}  // namespace tb
