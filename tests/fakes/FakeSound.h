// A sound device that remembers what it played.
#pragma once

#include <vector>

#include "platform/Sound.h"

namespace tb {

class FakeSound : public Sound {
public:
    struct Call {
        std::shared_ptr<const Text> Wave;
        std::uint32_t Flags;
    };
    std::vector<Call> Played;

    void Play(const std::shared_ptr<const Text>& wave, std::uint32_t flags) noexcept override {
        Played.push_back({wave, flags});
    }
};

}  // namespace tb
