// URLs in a text.
#pragma once

#include <vector>

#include "base/text.h"

namespace tb {

// Every http and https URL that stands in the text, as a link of HTML or between words, once each and in order. Numeric
// hosts are in dotted form, as programs ask for them; "&amp;" is "&"; what follows "#" is cut off, as are slashes and
// punctuation at the end. What has no host is no URL. Never fails.
std::vector<Text> UrlsIn(TextView text);

}  // namespace tb
