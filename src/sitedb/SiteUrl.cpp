#include "sitedb/SiteUrl.h"

#include "urlcheck/url/UrlAuthority.h"
#include "urlcheck/url/UrlDecode.h"

namespace tb {

namespace {

enum Trait : std::uint8_t { Folds = 1, Decodes = 2 };

constexpr std::array<std::uint8_t, 256> MakeTraits() {
    std::array<std::uint8_t, 256> traits{};
    for (size_t code = 'A'; code <= 'Z'; ++code) traits[code] = Folds;
    for (size_t code = 0x80; code < traits.size(); ++code) traits[code] = Folds;
    traits['%'] = traits['+'] = Decodes;
    return traits;
}

constexpr std::array<std::uint8_t, 256> TraitsByCode = MakeTraits();

}  // namespace

DecodedUrl::DecodedUrl(const SiteRecord& record) : m_Whole(record.Url()) {
    if (record.MayDecode()) {
        m_Whole = m_Copy = UrlDecode(m_Whole);
        m_Host = UrlAuthority(m_Whole);
    } else {
        m_Host = record.Authority();
    }
}

DecodedUrl::DecodedUrl(TextView encoded, bool mayDecode) : m_Whole(encoded) {
    if (mayDecode) m_Whole = m_Copy = UrlDecode(encoded);
    m_Host = UrlAuthority(m_Whole);
}

SiteUrl::Traits::Traits(TextView url) {
    unsigned all = 0;
    for (const char character : url) all |= TraitsByCode[static_cast<std::uint8_t>(character)];
    MayFold = (all & Folds) != 0;
    MayDecode = (all & Decodes) != 0;
}

SiteUrl::SiteUrl(TextView url) : SiteUrl(url, Traits(url)) {}

SiteUrl::SiteUrl(TextView url, const Traits& traits)
    : m_Lower(traits.MayFold ? LowerCase(url) : Text()),
      m_Clean(WithoutTrailingSlashes(traits.MayFold ? TextView(m_Lower) : url)),
      m_Decoded(m_Clean, traits.MayDecode) {}

}  // namespace tb
