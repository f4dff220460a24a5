// What TrawlbeamHelper.dll exports: the four entry points of an in-process server with one class.
#include <windows.h>

#include <objbase.h>

#include "components/TrawlbeamHelper/win32/HelperFactory.h"
#include "components/TrawlbeamHelper/win32/Registration.h"
#include "components/tbBHOCfg/HelperIdentity.h"
#include "platform/win32/Module.h"
#include "platform/win32/Win32Text.h"

namespace {

bool IsHelper(REFCLSID id) {
    CLSID own{};
    return SUCCEEDED(CLSIDFromString(tb::ToSystem(tb::HelperCLSID).c_str(), &own)) && IsEqualCLSID(id, own);
}

}  // namespace

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
    return tb::Guarded([&]() -> HRESULT {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (!IsHelper(classId)) return CLASS_E_CLASSNOTAVAILABLE;
        const tb::ComPointer<IClassFactory> factory(new tb::HelperFactory(tb::FileOf(tb::OwnModule()).parent_path()));
        return factory->QueryInterface(id, object);
    });
}

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllCanUnloadNow() {
    return tb::ServedObjects::Live() == 0 ? S_OK : S_FALSE;
}

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllRegisterServer() {
    return tb::Guarded([] { return tb::RegisterHelper(tb::FileOf(tb::OwnModule())); });
}

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllUnregisterServer() {
    return tb::Guarded([] { return tb::UnregisterHelper(); });
}
