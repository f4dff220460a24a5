#include "service/store/SiteEntry.h"

#include <cctype>

#include "base/errors.h"
#include "base/numbers.h"
#include "urlcheck/url/UrlAuthority.h"
#include "urlcheck/url/UrlDecode.h"

namespace tb {

namespace {

// A client scrambles an entry by its length, which it keeps in 16 bits.
constexpr size_t LongestEntry = 32767;

bool HasScheme(const Text& url) {
    const size_t end = url.find("://");
    if (end == 0 || end == Text::npos) return false;
    for (const char character : url.substr(0, end)) {
        const bool fits = std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '+' ||
                          character == '-' || character == '.';
        if (!fits) return false;
    }
    return true;
}

Text CleanUrl(const Text& url) {
    Text clean(WithoutTrailingSlashes(LowerCase(url)));
    const Text decoded = UrlDecode(clean);
    if (UrlAuthority(decoded).value_or("").empty()) throw InputError("no host in the URL " + Quoted(url));
    return clean;
}

void RequireNumber(const Text& category) {
    try {
        ToDouble(category);
    } catch (const RuntimeError&) {
        throw InputError("the category " + Quoted(category) + " is no number");
    }
}

void RequireFit(const Text& field) {
    if (field.find_first_of("\t\n") != Text::npos) throw InputError("tab or line feed within " + Quoted(field));
}

}  // namespace

std::vector<Text> SiteUrlsOf(const Text& url) {
    RequireFit(url);
    if (HasScheme(url)) return {CleanUrl(url)};
    return {CleanUrl("http://" + url), CleanUrl("https://" + url)};
}

std::vector<Site> SitesOf(const Text& url, const Text& category, const Text& validated) {
    RequireNumber(category);
    RequireFit(category);
    RequireFit(validated);
    std::vector<Site> sites;
    for (Text& clean : SiteUrlsOf(url)) {
        if (clean.size() + category.size() + validated.size() + 2 > LongestEntry) {
            throw InputError("longer than " + std::to_string(LongestEntry) + " characters: " + Quoted(url));
        }
        sites.push_back({std::move(clean), category, validated});
    }
    return sites;
}

}  // namespace tb
