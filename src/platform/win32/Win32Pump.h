// The message queue of the calling thread.
#pragma once

#include "platform/Pump.h"

namespace tb {

class Win32Pump : public Pump {
public:
    // The end of the message loop, if it waits in the queue, stays there.
    void ProcessMessages() override;
    void Sleep(std::int32_t milliseconds) override;
};

}  // namespace tb
