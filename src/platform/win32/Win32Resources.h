// The resources of the running program's file.
#pragma once

#include "platform/Resources.h"

namespace tb {

class Win32Resources : public Resources {
public:
    Text String(std::int32_t id) override;
    Text Custom(const Text& name) override;
    Text Icon(std::int32_t id) override;
};

}  // namespace tb
