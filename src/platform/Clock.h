// The present moment.
#pragma once

#include "base/date.h"

namespace tb {

class Clock {
public:
    virtual ~Clock() = default;
    // Local time of the user's zone, to the second.
    virtual Date Now() = 0;
};

}  // namespace tb
