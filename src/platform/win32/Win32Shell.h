// The user's shell.
#pragma once

#include "platform/Shell.h"

namespace tb {

class Win32Shell : public Shell {
public:
    bool Open(const Text& target) override;
};

}  // namespace tb
