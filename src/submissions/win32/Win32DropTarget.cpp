#include "submissions/win32/Win32DropTarget.h"

#include <utility>

#include "submissions/win32/OleDropData.h"

namespace tb {

HRESULT Win32DropTarget::Choose(DWORD* effect) const {
    if (effect == nullptr) return E_POINTER;
    const DWORD allowed = *effect;
    *effect = DROPEFFECT_NONE;
    if (m_IsBusy) return S_OK;
    for (const DWORD wanted : {DROPEFFECT_COPY, DROPEFFECT_LINK}) {
        if ((allowed & wanted) == 0) continue;
        *effect = wanted;
        break;
    }
    return S_OK;
}

void Win32DropTarget::Tell(DragState state) noexcept {
    if (!m_Drag) return;
    // The window, and with it the registration, may go while it is told.
    const auto alive = ComPointer<IDropTarget>::Share(this);
    Trap([&] { m_Drag(state); }, m_Failed);
}

HRESULT Win32DropTarget::DragEnter(IDataObject*, DWORD, POINTL, DWORD* effect) noexcept {
    const HRESULT result = Choose(effect);
    m_IsOver = SUCCEEDED(result) && *effect != DROPEFFECT_NONE;
    if (m_IsOver) Tell(DragState::Enter);
    return result;
}

HRESULT Win32DropTarget::DragOver(DWORD, POINTL, DWORD* effect) noexcept {
    if (m_IsOver) Tell(DragState::Over);
    return Choose(effect);
}

HRESULT Win32DropTarget::DragLeave() noexcept {
    if (std::exchange(m_IsOver, false)) Tell(DragState::Leave);
    return S_OK;
}

HRESULT Win32DropTarget::Drop(IDataObject* data, DWORD, POINTL, DWORD* effect) noexcept {
    const HRESULT result = Choose(effect);
    // What is not taken goes away.
    if (FAILED(result) || *effect == DROPEFFECT_NONE) {
        DragLeave();
        return result;
    }
    m_IsOver = false;
    // The window, and with it the registration, may go while the drop is handled.
    const auto alive = ComPointer<IDropTarget>::Share(this);
    m_IsBusy = true;
    Trap(
        [&] {
            OleDropData dropped(data);
            m_Drop(dropped);
        },
        [&](const RuntimeError& error) {
            *effect = DROPEFFECT_NONE;
            m_Failed(error);
        });
    m_IsBusy = false;
    return S_OK;
}

}  // namespace tb
