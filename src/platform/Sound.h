// Sounds from memory.
#pragma once

#include <cstdint>
#include <memory>

#include "base/text.h"

namespace tb {

// How a sound is played, as sndPlaySound takes it.
namespace SoundFlag {
inline constexpr std::uint32_t Async = 0x1;
inline constexpr std::uint32_t NoDefault = 0x2;
inline constexpr std::uint32_t Memory = 0x4;
inline constexpr std::uint32_t NoStop = 0x10;
inline constexpr std::uint32_t NoWait = 0x2000;
}  // namespace SoundFlag

class Sound {
public:
    virtual ~Sound() = default;
    // Plays the image of a wave file, which this object keeps until nothing can play it any more. Whatever is no wave
    // file, a missing device and a device in use are passed over in silence.
    virtual void Play(const std::shared_ptr<const Text>& wave, std::uint32_t flags) noexcept = 0;
};

}  // namespace tb
