// Stamps of published states, "YYYYMMDDHHMM" in UTC. Their order as texts is their order in time.
#pragma once

#include <functional>

#include "base/date.h"
#include "base/text.h"

namespace tb {

// The stamp of a client that holds nothing, and of a service that never published.
inline constexpr const char* NoSitesStamp = "200001010000";

// The present moment in UTC, to the second.
using UtcNow = std::function<Date()>;
Date SystemUtcNow();

// Of a state published now: the minute of `now`, or the minute behind `last` when that is later, so that no two states
// share a stamp however quickly they follow each other. `last` must be a stamp.
Text NextStamp(const Text& last, const Date& now);

}  // namespace tb
