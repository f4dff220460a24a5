// Message boxes of Windows, brought to the front and without an owner.
#pragma once

#include "platform/Dialogs.h"

namespace tb {

class Win32Dialogs : public Dialogs {
public:
    std::int32_t ShowMessage(const Text& prompt, std::int32_t buttons, const Text& title) override;
    void SoundMessage(std::int32_t icon) override;
};

}  // namespace tb
