#include "components/TrawlbeamHelper/win32/HelperFactory.h"

#include "base/errors.h"
#include "components/TrawlbeamHelper/win32/HelperObject.h"

namespace tb {

HRESULT STDMETHODCALLTYPE HelperFactory::CreateInstance(IUnknown* outer, REFIID id, void** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    HRESULT result = E_OUTOFMEMORY;
    Trap(
        [&] {
            const Reference<IObjectWithSite> helper(new HelperObject(m_Folder));
            result = helper.Get()->QueryInterface(id, object);
        },
        [](const RuntimeError&) { /* no memory */ });
    return result;
}

HRESULT STDMETHODCALLTYPE HelperFactory::LockServer(BOOL lock) noexcept {
    ServedObjects::Add(lock ? 1 : -1);
    return S_OK;
}

}  // namespace tb
