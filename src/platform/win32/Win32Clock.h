// The clock of Windows.
#pragma once

#include <windows.h>

#include "platform/Clock.h"

namespace tb {

// A moment of the system, which counts in UTC, as local time.
Date LocalDate(const FILETIME& moment);

class Win32Clock : public Clock {
public:
    Date Now() override;
};

}  // namespace tb
