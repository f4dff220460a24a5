// Random numbers.
#pragma once

namespace tb {

class Random {
public:
    virtual ~Random() = default;
    // A number from 0 up to, but not including, 1.
    virtual double Next() = 0;
};

}  // namespace tb
