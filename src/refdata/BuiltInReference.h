// The reference document that the program knows by itself, so that it can run before it has met a server.
#pragma once

#include "base/text.h"

namespace tb {

// Statuses, dispositions and categories; no countries, addresses, words or domains. No white space between elements.
Text BuiltInReference();

}  // namespace tb
