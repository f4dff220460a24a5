// A frame (docs/formats/frame.md) made piece by piece, so that a long text need not be there as a whole beside it.
#pragma once

#include <cstdint>

#include "base/text.h"

namespace tb {

class FrameBuilder {
public:
    FrameBuilder();

    void Append(TextView plain);
    // The frame of everything appended, which must be something. Nothing may follow.
    Text Finish();

private:
    void Seal();

    Text m_Pending;
    Text m_Frame;
    size_t m_Scrambled = 0;
    std::int32_t m_Check = 0;
};

}  // namespace tb
