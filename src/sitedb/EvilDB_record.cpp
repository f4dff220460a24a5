#include "sitedb/EvilDB_record.h"

#include <algorithm>
#include <cstring>

#include "sitedb/ByteBlock.h"
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
    char* const plain = m_Memory.Take(scrambled.size() + ByteBlock::Size);
    UnscrambleByLength(scrambled, plain);
    m_Plain = {plain, scrambled.size()};
    Scan();
}

// One pass for all that is asked of a record: this is most of what an entry costs at a load.
void Record::Scan() {
    ByteBlock::Mask decodes = 0;
    ByteBlock::Mask folds = 0;
    for (size_t start = 0; start < m_Plain.size(); start += ByteBlock::Size) {
        const ByteBlock block(m_Plain.data() + start);
        const ByteBlock::Mask used = FirstBits(m_Plain.size() - start);
        decodes |= (block.Where('%') | block.Where('+')) & used;
        folds |= (block.WhereHigh() | block.WhereCapital()) & used;
        ForEachBit(block.Where(FieldEnd) & used, [&](size_t bit) {
            EndField(start + bit);
            return true;
        });
        if (m_SlashCount == KnownSlashes) continue;
        ForEachBit(block.Where('/') & used, [&](size_t bit) {
            m_Slashes[m_SlashCount++] = start + bit;
            return m_SlashCount < KnownSlashes;
        });
    }
    EndField(m_Plain.size());
    m_MayDecode = decodes != 0;
    m_MayFold = folds != 0;
}

void Record::EndField(size_t place) {
    if (m_FieldCount < KnownFields) m_Fields[m_FieldCount] = m_Plain.substr(m_FieldBegin, place - m_FieldBegin);
    ++m_FieldCount;
    m_FieldBegin = place + 1;
}

bool Record::FindHost(TextView& host) const {
    const TextView url = Url();
    if (m_SlashCount < 2 || m_Slashes[1] >= url.size()) return false;
    const size_t begin = m_Slashes[1] + 1;
    const size_t end = m_SlashCount > 2 ? std::min(m_Slashes[2], url.size()) : url.size();
    host = url.substr(begin, end - begin);
    return true;
}

UrlTraits::UrlTraits(TextView url) {
    unsigned all = 0;
    for (const char character : url) all |= Traits[static_cast<std::uint8_t>(character)];
    MayFold = (all & Folds) != 0;
    MayDecode = (all & Decodes) != 0;
}

DecodedUrl::DecodedUrl(const Record& record) : m_Whole(record.Url()) {
    if (record.MayDecode()) {
        m_Whole = m_Copy = UrlDecode(m_Whole);
        FindHost();
    } else {
        m_HasHost = record.FindHost(m_Host);
    }
}

DecodedUrl::DecodedUrl(TextView encoded, bool mayDecode) : m_Whole(encoded) {
    if (mayDecode) m_Whole = m_Copy = UrlDecode(encoded);
    FindHost();
}

void DecodedUrl::FindHost() {
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
