#include "urlcheck/url/NormalizeIP.h"

#include "base/errors.h"
#include "urlcheck/url/UrlAuthority.h"
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

std::optional<Text> NormalizeAuthority(TextView authority) {
    // Most hosts are names, with no user before them.
    const bool isName = authority.empty() || authority.front() < '0' || authority.front() > '9';
    if (isName && authority.find('@') == TextView::npos) return std::nullopt;
    const auto [first, last] = FindHost(authority);
    const auto address = inet_addr(Mid(authority, first, last - first + 1));
    if (!address) return std::nullopt;
    return Text(Left(authority, static_cast<size_t>(first) - 1)) + inet_ntoa(*address) +
           Text(authority.substr(static_cast<size_t>(last)));
}

// `letters` are small ones.
bool StartsWith(TextView url, TextView letters) {
    const TextView start = Left(url, letters.size());
    return start == letters || LowerCase(start) == letters;
}

// False for a URL that is to stay as it is.
bool Complete(Text& url) {
    if (!StartsWith(url, "http")) {
        if (StartsWith(url, "res:")) return false;
        url.insert(0, "http://");
    }
    url.resize(WithoutTrailingSlashes(url).size());
    return true;
}

void RewriteHost(Text& url, const std::function<void(const Text&)>& debugMessage) {
    Trap(
        [&] {
            const std::optional<TextView> authority = UrlAuthority(url);
            const std::optional<Text> normal = authority ? NormalizeAuthority(*authority) : std::nullopt;
            if (!normal || *normal == *authority) return;
            Text joined = url;
            joined.replace(static_cast<size_t>(authority->data() - url.data()), authority->size(), *normal);
            if (debugMessage) debugMessage("Normalize IP: " + url + " --> " + joined);
            url = std::move(joined);
        },
        [](const RuntimeError&) { /* no host that could be read: the URL stays */ });
}

}  // namespace

Text NormalizeIP(Text& url, const std::function<void(const Text&)>& debugMessage) {
    if (!Complete(url)) return url;
    Text result = url;
    RewriteHost(result, debugMessage);
    return result;
}

Text NormalizeIP(Text&& url, const std::function<void(const Text&)>& debugMessage) {
    if (Complete(url)) RewriteHost(url, debugMessage);
    return std::move(url);
}

}  // namespace tb
