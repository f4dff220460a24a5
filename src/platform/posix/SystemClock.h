// The clock of this machine, for the operator's tools.
#pragma once

#include <ctime>

#include "platform/Clock.h"

namespace tb {

// A moment of the system in the local time of this machine.
Date LocalDate(std::time_t moment);

// The moment at which the local time of this machine is `local`, the earlier or the later where the clocks are set
// back.
std::time_t LocalMoment(const Date& local);

class SystemClock : public Clock {
public:
    Date Now() override;
};

}  // namespace tb
