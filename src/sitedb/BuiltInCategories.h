// The categories that are known without reference data.
#pragma once

#include "base/text.h"

namespace tb {

// The name of a category by its ID, compared as text ("1", not "1.0"). Error 91 for an unknown one.
Text BuiltInCategoryName(TextView id);

}  // namespace tb
