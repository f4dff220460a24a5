#include "sitedb/EvilDB_record.h"

#include <cstring>

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

constexpr std::array<std::uint8_t, 256> Traits = MakeTraits();

}  // namespace

ScrambledRecord::ScrambledRecord(TextView url, TextView category, TextView validated) {
    const size_t size = url.size() + 1 + category.size() + 1 + validated.size();
    char* const bytes = m_Memory.Take(size);
    char* end = bytes;
    for (const TextView field : {url, category, validated}) {
        if (end != bytes) *end++ = FieldEnd;
        std::memcpy(end, field.data(), field.size());
        end += field.size();
    }
    m_Bytes = {bytes, size};
    ScrambleByLength(m_Bytes, bytes);
}

Record::Record(TextView scrambled) {
    char* plain = m_Memory.Take(scrambled.size());
    UnscrambleByLength(scrambled, plain);
    m_Plain = {plain, scrambled.size()};
    TextView rest = m_Plain;
    for (size_t end = 0; end != TextView::npos; rest.remove_prefix(end + 1)) {
        end = rest.find(FieldEnd);
        if (m_FieldCount < KnownFields) m_Fields[m_FieldCount] = rest.substr(0, end);
        ++m_FieldCount;
        if (end == TextView::npos) break;
    }
}

UrlTraits::UrlTraits(TextView url) {
    unsigned all = 0;
    for (const char character : url) all |= Traits[static_cast<std::uint8_t>(character)];
    MayFold = (all & Folds) != 0;
    MayDecode = (all & Decodes) != 0;
}

DecodedUrl::DecodedUrl(TextView encoded, bool mayDecode) : m_Whole(encoded) {
    if (mayDecode) m_Whole = m_Copy = UrlDecode(encoded);
    const size_t scheme = m_Whole.find('/');
    if (scheme == TextView::npos) return;
    const size_t authority = m_Whole.find('/', scheme + 1);
    if (authority == TextView::npos) return;
    m_HasHost = true;
    m_Host = m_Whole.substr(authority + 1);
    m_Host = m_Host.substr(0, m_Host.find('/'));
}

SiteUrl::SiteUrl(TextView url, const UrlTraits& traits)
    : m_Lower(traits.MayFold ? LowerCase(url) : Text()),
      m_Clean(WithoutTrailingSlashes(traits.MayFold ? TextView(m_Lower) : url)),
      m_Decoded(m_Clean, traits.MayDecode) {}

}  // namespace tb
