// CRC-32 of ISO 3309, as in zlib.
#pragma once

#include <cstdint>

#include "base/text.h"

namespace tb {

// Feeding a result back as the seed continues the checksum over the next bytes; seed 0 begins one.
class cCRC32 {
public:
    std::int32_t GetStringCrc32(TextView text, std::int32_t seed) const { return GetByteArrayCrc32(text, seed); }
    std::int32_t GetByteArrayCrc32(TextView bytes, std::int32_t seed) const;
};

}  // namespace tb
