// The C face of tbBHBridge.dll, version 1, exported as tbBHBridge_Face. tbBHBridge.h is what callers use.
#pragma once

#include "components/faces/Face.h"

namespace tb {

// Each call looks for the program anew; nothing is kept between calls. Calls on different threads do not disturb each
// other. `milliseconds` bounds the wait for the program, which may be stopped or busy; 0 raises error 5.
struct tbBHBridgeFace {
    static constexpr std::uint32_t Version = 1;
    static constexpr const char* Component = "tbBHBridge";
    static constexpr const char* File = "tbBHBridge.dll";
    static constexpr const char* Entry = "tbBHBridge_Face";

    // 1 in `found` when there is a channel.
    void (*Locate)(std::int32_t* found, FaceFailure* failure) noexcept;
    // Sends a request, the command and what follows it joined by tabs, and hands out the reply. 0 in `answered`, and no
    // call of `take`, without a channel or without an answer in that time. Messages that other threads send to windows
    // of this thread are handled meanwhile.
    void (*Ask)(const char* fields, std::size_t size, std::uint32_t milliseconds, FaceTake take, void* target,
                std::int32_t* answered, FaceFailure* failure) noexcept;
    // Asks the running program to show its main window. 0 in `done` without a channel or when it took longer.
    void (*WakeUp)(std::uint32_t milliseconds, std::int32_t* done, FaceFailure* failure) noexcept;
};

}  // namespace tb
