// The addresses of a host without waiting for ever: the system's own question has no limit.
#pragma once

#include "base/text.h"

namespace tb {

// Its IPv4 addresses in the resolver's order, at most 16, joined by one blank. Empty when there are none, when they are
// not known after `milliseconds`, or when several earlier questions still wait for their answers.
Text HostAddresses(const Text& host, unsigned milliseconds);

}  // namespace tb
