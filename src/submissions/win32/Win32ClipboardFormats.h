// The clipboard formats of the system by name.
#pragma once

#include "submissions/DropData.h"

namespace tb {

class Win32ClipboardFormats : public ClipboardFormats {
public:
    // Error 51 when the system has no number left.
    ClipboardFormat Register(const Text& name) override;
};

}  // namespace tb
