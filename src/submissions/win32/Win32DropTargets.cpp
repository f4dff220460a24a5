#include "submissions/win32/Win32DropTargets.h"

#include "platform/win32/ComPointer.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/Win32WindowText.h"
#include "submissions/win32/Win32DropTarget.h"

namespace tb {

namespace {

// A window that is registered as a target.
struct DropWindowTrait {
    using Value = HWND;
    static Value None() { return nullptr; }
    static bool Close(Value value) { return SUCCEEDED(RevokeDragDrop(value)); }
};

class Registered : public DropRegistration {
public:
    explicit Registered(HWND window) : m_Window(window) {}

private:
    Handle<DropWindowTrait> m_Window;
};

}  // namespace

std::unique_ptr<DropRegistration> Win32DropTargets::Register(WindowHandle window, DropHandler drop, DragHandler drag) {
    const ComPointer<IDropTarget> target(new Win32DropTarget(std::move(drop), m_Failed, std::move(drag)));
    const HRESULT result = RegisterDragDrop(ToHwnd(window), target.Get());
    if (FAILED(result)) throw SystemError("RegisterDragDrop", static_cast<DWORD>(result));
    return std::make_unique<Registered>(ToHwnd(window));
}

}  // namespace tb
