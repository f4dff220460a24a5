// What is built into the program file.
#pragma once

#include <cstdint>

#include "base/text.h"

namespace tb {

class Resources {
public:
    virtual ~Resources() = default;
    // A string resource with all its characters; empty when there is none of that number.
    virtual Text String(std::int32_t id) = 0;
    // The bytes of a resource of type "CUSTOM". Error 326 when there is none of that name.
    virtual Text Custom(const Text& name) = 0;
    // An icon with all its sizes, as the bytes of an icon file; empty when there is none of that number.
    virtual Text Icon(std::int32_t id) = 0;
};

}  // namespace tb
