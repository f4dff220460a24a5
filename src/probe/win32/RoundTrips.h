// How long a request and its reply take.
#pragma once

#include "probe/win32/ProbeOptions.h"

namespace tb {

// Sends "Check" requests for the URLs in turn and prints the percentiles of their round trips in microseconds, one line
// a window. With another window to compare with, the requests go to both in alternating blocks, so that what else the
// machine does falls on both alike, and a last line has the ratio of the medians. Raises NoChannel.
void PrintRoundTrips(const ProbeOptions& options);

}  // namespace tb
