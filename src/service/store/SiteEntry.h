// A site as clients hold it, made from what a publisher writes.
#pragma once

#include <vector>

#include "base/text.h"

namespace tb {

struct Site {
    // Lower case, without trailing "/", percent-encoded as the publisher wrote it. Clients fold it the same way and
    // decode it only to match, so it travels as it stands, and this text is what tells two sites apart.
    Text Url;
    Text Category;
    Text Validated;
};

// The sites of a line: one, or two under http:// and https:// when the URL has no scheme. Raises an InputError for what
// a client would refuse or could never match (no host, too long), for a category that is no number, which would spoil
// the checks of all sites of its host, and for a tab or line feed, which the exchange has no room for.
std::vector<Site> SitesOf(const Text& url, const Text& category, const Text& validated);

// The URLs that SitesOf gives.
std::vector<Text> SiteUrlsOf(const Text& url);

}  // namespace tb
