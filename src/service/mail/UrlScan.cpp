#include "service/mail/UrlScan.h"

#include <algorithm>
#include <cctype>
#include <unordered_set>

#include "urlcheck/url/NormalizeIP.h"

namespace tb {

namespace {

// Characters taken of a URL. The list knows sites by how their URLs begin, so a longer one is found by that much of it.
constexpr size_t LongestUrl = 2048;

bool EndsUrl(char character) {
    const auto code = static_cast<unsigned char>(character);
    return code <= 0x20 || code == 0x7F || TextView("\"'<>`#").find(character) != TextView::npos;
}

// From its scheme, of that length, to where it ends in the text.
TextView Whole(TextView text, size_t schemeSize) {
    TextView url = text.substr(0, LongestUrl);
    url = url.substr(0, static_cast<size_t>(std::find_if(url.begin(), url.end(), EndsUrl) - url.begin()));
    // Markup within text that was written for HTML.
    for (const TextView entity : {"&lt;", "&gt;", "&quot;", "&nbsp;"}) url = url.substr(0, url.find(entity));
    while (url.size() > schemeSize && TextView(".,;:!?)]}*/").find(url.back()) != TextView::npos) url.remove_suffix(1);
    return url;
}

// Of "http://" or "https://" in lower case at the beginning, or 0.
size_t SchemeSize(TextView lowered) {
    for (const TextView scheme : {"http://", "https://"}) {
        if (lowered.starts_with(scheme)) return scheme.size();
    }
    return 0;
}

}  // namespace

std::vector<Text> UrlsIn(TextView text) {
    const Text lowered = LowerCase(text);
    std::vector<Text> urls;
    std::unordered_set<Text> known;
    size_t next = 0;
    for (size_t start = lowered.find("http"); start != Text::npos; start = lowered.find("http", next)) {
        next = start + 1;
        const size_t schemeSize = SchemeSize(TextView(lowered).substr(start));
        if (schemeSize == 0) continue;
        const TextView found = Whole(text.substr(start), schemeSize);
        next = start + found.size();
        if (found.size() == schemeSize || std::isalnum(static_cast<unsigned char>(found[schemeSize])) == 0) continue;
        Text url = ReplaceAll(found, "&amp;", "&");
        url = NormalizeIP(url);
        if (known.insert(url).second) urls.push_back(std::move(url));
    }
    return urls;
}

}  // namespace tb
