#include "components/TrawlbeamHelper/win32/HelperFactory.h"

#include "components/TrawlbeamHelper/win32/HelperObject.h"

namespace tb {

HRESULT STDMETHODCALLTYPE HelperFactory::CreateInstance(IUnknown* outer, REFIID id, void** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return Guarded([&] {
        const ComPointer<IObjectWithSite> helper(new HelperObject(m_Folder));
        return helper->QueryInterface(id, object);
    });
}

HRESULT STDMETHODCALLTYPE HelperFactory::LockServer(BOOL lock) noexcept {
    ServedObjects::Add(lock ? 1 : -1);
    return S_OK;
}

}  // namespace tb
