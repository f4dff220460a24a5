#include "submissions/win32/Win32DropTarget.h"

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

HRESULT Win32DropTarget::DragEnter(IDataObject*, DWORD, POINTL, DWORD* effect) noexcept { return Choose(effect); }

HRESULT Win32DropTarget::DragOver(DWORD, POINTL, DWORD* effect) noexcept { return Choose(effect); }

HRESULT Win32DropTarget::Drop(IDataObject* data, DWORD, POINTL, DWORD* effect) noexcept {
    const HRESULT result = Choose(effect);
    if (FAILED(result) || *effect == DROPEFFECT_NONE) return result;
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
