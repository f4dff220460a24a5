// Numeric hosts of URLs folded into one spelling.
#pragma once

#include <functional>

#include "base/text.h"

namespace tb {

// The URL with a host that reads as an IPv4 address rewritten in dotted decimal; white space behind the number goes
// with all of the host that follows it. Everything else stays as it came. `url` itself is changed too: "http://" goes
// in front unless it begins with the letters "http", and trailing slashes go. That changed URL is the result when there
// is no host to read. A URL that begins with "res:" is not touched at all. `debugMessage` hears one line when the host
// was rewritten. Never fails.
Text NormalizeIP(Text& url, const std::function<void(const Text&)>& debugMessage = {});
// The same where the changed URL is not wanted.
Text NormalizeIP(Text&& url, const std::function<void(const Text&)>& debugMessage = {});

}  // namespace tb
