// The clock of this machine, for the operator's tools.
#pragma once

#include "platform/Clock.h"

namespace tb {

class SystemClock : public Clock {
public:
    Date Now() override;
};

}  // namespace tb
