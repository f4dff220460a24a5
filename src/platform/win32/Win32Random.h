// Chance, begun anew by the clock at each start of the program.
#pragma once

#include <random>

#include "platform/Random.h"

namespace tb {

class Win32Random : public Random {
public:
    Win32Random();
    double Next() override;

private:
    std::mt19937 m_Numbers;
};

}  // namespace tb
