// The errors that controls raise beside those of base/errors.h.
#pragma once

#include "base/errors.h"

namespace tb {

enum class ControlErrorNumber : std::int32_t {
    AlreadyLoaded = 360,  // an index that it has
    InvalidValue = 380,   // a value that the property does not take
    NotAtRunTime = 382,   // a property that is fixed once the window exists
    WrongArgumentCount = 450,
    NameInUse = 727,
};

RuntimeError Error(ControlErrorNumber number);

}  // namespace tb
