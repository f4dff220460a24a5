// Opening things as the user's shell would.
#pragma once

#include "base/text.h"

namespace tb {

class Shell {
public:
    virtual ~Shell() = default;
    // Opens a file or an address in a normal window. False when the shell refuses.
    virtual bool Open(const Text& target) = 0;
};

}  // namespace tb
