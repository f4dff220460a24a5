// The two sounds of the program: a click, and the alert on a malicious site.
#pragma once

#include "platform/Sound.h"

namespace tb {

class Sounds {
public:
    // `click` and `alert` are images of wave files; one that is not whole is never played. `device` must outlive this
    // object.
    Sounds(Sound& device, Text click, Text alert);

    // Start the sound if `play` and return at once. A sound that is playing goes on instead; there is no default sound.
    void PlayClickSound(bool play) noexcept;
    void PlayAlertSound(bool play) noexcept;

private:
    Sound& m_Device;
    std::shared_ptr<const Text> m_Click;
    std::shared_ptr<const Text> m_Alert;
};

}  // namespace tb
