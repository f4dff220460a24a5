// What a piece of code raises.
#pragma once

#include "base/errors.h"

namespace tb {

// The number of the error that `body` raises, 0 for none.
template <typename Body>
std::int32_t Raised(Body body) {
    std::int32_t number = 0;
    Trap([&] { body(); }, [&](const RuntimeError& error) { number = error.Number; });
    return number;
}

}  // namespace tb
