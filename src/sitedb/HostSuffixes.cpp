#include "sitedb/HostSuffixes.h"

#include <algorithm>
#include <bit>

#include "base/numbers.h"
#include "sitedb/ByteBlock.h"

namespace tb {

namespace {

constexpr size_t MarkedBytes = 64;

}  // namespace

HostSuffixes::HostSuffixes(TextView url) {
    Fold(url);
    if (m_HostEnd == 0) return;
    const TextView host = m_Lowered.substr(m_HostBegin, m_HostEnd - m_HostBegin);
    NarrowToInt16(host.size() >> 15 == 0 ? 0 : std::count(host.begin(), host.end(), '.'));
}

void HostSuffixes::Fold(TextView url) {
    char* const lowered = m_Memory.Take(url.size() + ByteBlock::Size);
    std::copy(url.begin(), url.end(), lowered);
    m_Lowered = {lowered, url.size()};
    size_t slashes = 0;
    for (size_t start = 0; start < url.size(); start += ByteBlock::Size) {
        ByteBlock block(lowered + start);
        const ByteBlock::Mask used = FirstBits(url.size() - start);
        if ((block.WhereHigh() & used) != 0) {
            const size_t end = std::min(start + ByteBlock::Size, url.size());
            for (size_t index = start; index < end; ++index) lowered[index] = LowerCase(lowered[index]);
        } else {
            block.LowerCapitals();
            block.Store(lowered + start);
        }
        if (start < MarkedBytes) m_Dots |= std::uint64_t{block.Where('.')} << start;
        if (slashes > 2) continue;
        ForEachBit(block.Where('/') & used, [&](size_t bit) {
            ++slashes;
            if (slashes == 2) m_HostBegin = start + bit + 1;
            m_HostEnd = start + bit;
            return slashes < 3;
        });
    }
    if (slashes < 3) m_HostEnd = slashes < 2 ? 0 : url.size();
}

size_t HostSuffixes::DotFrom(size_t index) const {
    if (m_HostEnd <= MarkedBytes) {
        const std::uint64_t dots = index < MarkedBytes ? m_Dots >> index : 0;
        return dots == 0 ? m_HostEnd : std::min(index + static_cast<size_t>(std::countr_zero(dots)), m_HostEnd);
    }
    const size_t dot = m_Lowered.substr(0, m_HostEnd).find('.', index);
    return dot == TextView::npos ? m_HostEnd : dot;
}

bool HostSuffixes::Next() {
    if (m_HostEnd == 0) return false;
    if (m_Label == 0) {
        m_Label = m_HostBegin;
        m_Dot = DotFrom(m_Label);
    } else {
        if (m_Dot == m_HostEnd) return false;
        m_Label = m_Dot + 1;
        m_Dot = DotFrom(m_Label);
        if (m_Dot == m_HostEnd) return false;
    }
    m_Suffix = m_Label;
    while (m_Suffix < m_HostEnd && m_Lowered[m_Suffix] == '.') ++m_Suffix;
    return true;
}

}  // namespace tb
