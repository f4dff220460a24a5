// Memory for one text, without an allocation for those of usual length.
#pragma once

#include <algorithm>
#include <array>

#include "base/text.h"

namespace tb {

class ShortMemory {
public:
    // So many bytes, with any content.
    char* Take(size_t size) {
        if (size <= m_Short.size()) return m_Short.data();
        m_Long.resize(size);
        return m_Long.data();
    }
    // The text in this memory.
    TextView Copy(TextView text) {
        char* const bytes = Take(text.size());
        std::copy(text.begin(), text.end(), bytes);
        return {bytes, text.size()};
    }

private:
    std::array<char, 256> m_Short;
    Text m_Long;
};

}  // namespace tb
