// Text of the code page and the system's wide text.
#pragma once

#include <string>

#include "base/codepage.h"

namespace tb {

inline Text FromSystem(std::wstring_view wide) {
    return FromWide({reinterpret_cast<const char16_t*>(wide.data()), wide.size()});
}

inline std::wstring ToSystem(TextView text) {
    const std::u16string wide = ToWide(text);
    return {wide.begin(), wide.end()};
}

}  // namespace tb
