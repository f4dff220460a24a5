// Waiting on the one thread of the user interface.
#pragma once

#include <cstdint>

namespace tb {

class Pump {
public:
    virtual ~Pump() = default;
    // Handles the messages that wait, a browser's request among them, and returns.
    virtual void ProcessMessages() = 0;
    // Does nothing for that time; no message is handled meanwhile.
    virtual void Sleep(std::int32_t milliseconds) = 0;
};

}  // namespace tb
