// The clipboard of Windows.
#pragma once

#include "platform/Clipboard.h"

namespace tb {

class Win32Clipboard : public Clipboard {
public:
    bool SetText(WindowHandle owner, const Text& text) override;
};

}  // namespace tb
