// What the user has chosen for the region.
#pragma once

#include "base/date.h"

namespace tb {

// The first character of either separator; "/" and ":" where the user has none.
DateSeparators RegionalSeparators();

}  // namespace tb
