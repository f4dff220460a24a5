// Windows on which the user can drop something.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/WindowText.h"
#include "submissions/DropData.h"

namespace tb {

// A window takes drops as long as this lives. It goes before the window, on the same thread.
class DropRegistration {
public:
    virtual ~DropRegistration() = default;
};

// What is dragged comes over the window, goes away without a drop, moves over it.
enum class DragState : std::int32_t { Enter = 0, Leave = 1, Over = 2 };

class DropTargets {
public:
    using DropHandler = std::function<void(DropData&)>;
    using DragHandler = std::function<void(DragState)>;

    virtual ~DropTargets() = default;
    // `drag`, which may be none, is told of what may be dropped here; a drop ends that without Leave. `drop` is called
    // for each drop, with data that is there only until it returns; one drop at a time, though it may serve messages.
    // It may end the registration. Error 51 when the system refuses.
    virtual std::unique_ptr<DropRegistration> Register(WindowHandle window, DropHandler drop,
                                                       DragHandler drag = {}) = 0;
};

}  // namespace tb
