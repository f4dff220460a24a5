// The clock of Windows.
#pragma once

#include "platform/Clock.h"

namespace tb {

class Win32Clock : public Clock {
public:
    Date Now() override;
};

}  // namespace tb
