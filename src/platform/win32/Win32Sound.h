// Sounds of Windows.
#pragma once

#include <vector>

#include "platform/Sound.h"

namespace tb {

class Win32Sound : public Sound {
public:
    Win32Sound() = default;
    Win32Sound(const Win32Sound&) = delete;
    Win32Sound& operator=(const Win32Sound&) = delete;
    // Stops what plays, since its bytes go.
    ~Win32Sound() override;

    // A result would prove nothing: the system says yes to any memory.
    void Play(const std::shared_ptr<const Text>& wave, std::uint32_t flags) noexcept override;

private:
    // The waves that were ever played: which of them still sounds cannot be asked.
    std::vector<std::shared_ptr<const Text>> m_Waves;
};

}  // namespace tb
