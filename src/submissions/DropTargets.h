// Windows on which the user can drop something.
#pragma once

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

class DropTargets {
public:
    virtual ~DropTargets() = default;
    // `drop` is called for each drop, with data that is there only until it returns; one drop at a time, though it may
    // serve messages. It may end the registration. Error 51 when the system refuses.
    virtual std::unique_ptr<DropRegistration> Register(WindowHandle window, std::function<void(DropData&)> drop) = 0;
};

}  // namespace tb
