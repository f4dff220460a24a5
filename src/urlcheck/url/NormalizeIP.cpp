#include "urlcheck/url/NormalizeIP.h"

#include "base/errors.h"
#include "urlcheck/url/inet_addr.h"

namespace tb {

namespace {

// Where the host stands in an authority: positions of its first and last character. The last "@" and the last ":" of
// all count, so that with a colon in the user part alone the host ends before it starts.
struct HostBounds {
    long First = 1;
    long Last = 0;
};

HostBounds FindHost(TextView authority) {
    HostBounds bounds{1, static_cast<long>(authority.size())};
    for (long position = 1; position <= static_cast<long>(authority.size()); ++position) {
        const char character = authority[static_cast<size_t>(position) - 1];
        if (character == '@') bounds.First = position + 1;
        if (character == ':') bounds.Last = position - 1;
    }
    return bounds;
}

Text NormalizeAuthority(const Text& authority) {
    const auto [first, last] = FindHost(authority);
    const auto address = inet_addr(Mid(authority, first, last - first + 1));
    if (!address) return authority;
    return Text(Left(authority, static_cast<size_t>(first) - 1)) + inet_ntoa(*address) +
           authority.substr(static_cast<size_t>(last));
}

}  // namespace

Text NormalizeIP(Text& url, const std::function<void(const Text&)>& debugMessage) {
    const Text scheme = LowerCase(Left(url, 4));
    if (scheme == "res:") return url;
    if (scheme != "http") url.insert(0, "http://");
    url.resize(WithoutTrailingSlashes(url).size());
    Text result = url;
    Trap(
        [&] {
            std::vector<Text> parts = Split(url, '/');
            Text& authority = At(parts, 2);
            authority = NormalizeAuthority(authority);
            Text joined = Join(parts, "/");
            if (joined != url && debugMessage) debugMessage("Normalize IP: " + url + " --> " + joined);
            result = std::move(joined);
        },
        [](const RuntimeError&) { /* no host that could be read: the URL stays */ });
    return result;
}

}  // namespace tb
