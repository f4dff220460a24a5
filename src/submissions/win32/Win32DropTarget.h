// What the system calls while something is dragged over a window and dropped on it.
#pragma once

#include <windows.h>

#include <ole2.h>

#include <functional>

#include "base/errors.h"
#include "platform/win32/ComObject.h"
#include "submissions/DropTargets.h"

namespace tb {

// Everything is taken; what it is shows at the drop. The source is told that it was copied, or linked where it forbids
// copies, never that it may delete what was dragged. While a drop is being handled others are turned away.
class Win32DropTarget : public ComObject<IDropTarget> {
public:
    // `drop` gets data that is there only until it returns; `drag`, which may be none, hears of what will be taken.
    // `failed` gets what they throw, and must not throw.
    Win32DropTarget(DropTargets::DropHandler drop, std::function<void(const RuntimeError&)> failed,
                    DropTargets::DragHandler drag = {})
        : m_Drop(std::move(drop)), m_Drag(std::move(drag)), m_Failed(std::move(failed)) {}

    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keys, POINTL place, DWORD* effect) noexcept override;
    HRESULT STDMETHODCALLTYPE DragOver(DWORD keys, POINTL place, DWORD* effect) noexcept override;
    HRESULT STDMETHODCALLTYPE DragLeave() noexcept override;
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD keys, POINTL place, DWORD* effect) noexcept override;

private:
    // What happens to what was dragged, out of what the source allows.
    HRESULT Choose(DWORD* effect) const;

    void Tell(DragState state) noexcept;

    DropTargets::DropHandler m_Drop;
    DropTargets::DragHandler m_Drag;
    std::function<void(const RuntimeError&)> m_Failed;
    bool m_IsBusy = false;
    // It has been told that something came.
    bool m_IsOver = false;
};

}  // namespace tb
