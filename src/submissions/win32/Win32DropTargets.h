// Windows of this thread as targets of drag and drop.
// Thread: one that has an OleSession and serves messages.
#pragma once

#include "base/errors.h"
#include "submissions/DropTargets.h"

namespace tb {

class Win32DropTargets : public DropTargets {
public:
    // `failed` gets what a drop throws: nothing propagates to the system. It must not throw, and outlives all
    // registrations.
    explicit Win32DropTargets(std::function<void(const RuntimeError&)> failed) : m_Failed(std::move(failed)) {}

    std::unique_ptr<DropRegistration> Register(WindowHandle window, DropHandler drop, DragHandler drag = {}) override;

private:
    std::function<void(const RuntimeError&)> m_Failed;
};

}  // namespace tb
