// CRC-16/ARC.
#pragma once

#include <cstdint>

#include "base/text.h"

namespace tb {

class CRC16 {
public:
    std::int16_t GetStringCRC16(TextView text) const;
};

}  // namespace tb
