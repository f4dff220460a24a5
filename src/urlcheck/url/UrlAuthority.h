// Where the authority of a URL stands for the verdict and the site databases: one reader, because what one of them took
// for a host and the other not would pass both.
#pragma once

#include <optional>

#include "base/text.h"

namespace tb {

// The third part between "/", whatever the first two are, up to the next "/" or the end: user name, brackets and port
// are in it, and a "?" or "\" ends nothing. Nothing for a URL of fewer than three parts. It views `url`.
inline std::optional<TextView> UrlAuthority(TextView url) {
    const size_t scheme = url.find('/');
    if (scheme == TextView::npos) return std::nullopt;
    const size_t authority = url.find('/', scheme + 1);
    if (authority == TextView::npos) return std::nullopt;
    url.remove_prefix(authority + 1);
    return url.substr(0, url.find('/'));
}

}  // namespace tb
