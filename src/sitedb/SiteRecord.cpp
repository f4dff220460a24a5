#include "sitedb/SiteRecord.h"

#include <algorithm>
#include <cstring>

#include "sitedb/ByteBlock.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

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

SiteRecord::SiteRecord(TextView scrambled) {
    char* const plain = m_Memory.Take(scrambled.size() + ByteBlock::Size);
    UnscrambleByLength(scrambled, plain);
    m_Plain = {plain, scrambled.size()};
    Scan();
}

// One pass for all that is asked of a record: this is most of what an entry costs at a load.
void SiteRecord::Scan() {
    ByteBlock::Mask decodes = 0;
    ByteBlock::Mask folds = 0;
    for (size_t start = 0; start < m_Plain.size(); start += ByteBlock::Size) {
        const ByteBlock block(m_Plain.data() + start);
        const ByteBlock::Mask used = FirstBits(m_Plain.size() - start);
        decodes |= (block.Where('%') | block.Where('+')) & used;
        folds |= (block.WhereHigh() | block.WhereCapital()) & used;
        ForEachBit(block.Where(FieldEnd) & used, [&](size_t bit) {
            AddField(start + bit);
            return true;
        });
        if (m_SlashCount == KnownSlashes) continue;
        ForEachBit(block.Where('/') & used, [&](size_t bit) {
            m_Slashes[m_SlashCount++] = start + bit;
            return m_SlashCount < KnownSlashes;
        });
    }
    AddField(m_Plain.size());
    m_MayDecode = decodes != 0;
    m_MayFold = folds != 0;
}

void SiteRecord::AddField(size_t end) {
    if (m_FieldCount < KnownFields) m_Fields[m_FieldCount] = m_Plain.substr(m_FieldBegin, end - m_FieldBegin);
    ++m_FieldCount;
    m_FieldBegin = end + 1;
}

std::optional<TextView> SiteRecord::Authority() const {
    const TextView url = Url();
    if (m_SlashCount < 2 || m_Slashes[1] >= url.size()) return std::nullopt;
    const size_t begin = m_Slashes[1] + 1;
    const size_t end = m_SlashCount > 2 ? std::min(m_Slashes[2], url.size()) : url.size();
    return url.substr(begin, end - begin);
}

}  // namespace tb
