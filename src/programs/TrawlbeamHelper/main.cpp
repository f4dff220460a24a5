// What TrawlbeamHelper.dll exports: the four entry points of an in-process server with one class.
#include <windows.h>

#include <objbase.h>

#include "base/errors.h"
#include "components/TrawlbeamHelper/win32/HelperFactory.h"
#include "components/TrawlbeamHelper/win32/Registration.h"
#include "components/tbBHOCfg/HelperIdentity.h"
#include "platform/win32/Win32Text.h"

namespace {

// This library's own file.
std::filesystem::path OwnFile() {
    static const char place = 0;
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, &place,
                       &module);
    // The longest path that the system knows.
    std::wstring file(32768, L'\0');
    file.resize(GetModuleFileNameW(module, file.data(), static_cast<DWORD>(file.size())));
    return file;
}

bool IsHelper(REFCLSID id) {
    CLSID own{};
    return SUCCEEDED(CLSIDFromString(tb::ToSystem(tb::HelperCLSID).c_str(), &own)) && IsEqualCLSID(id, own);
}

// What `body` returns; for lack of memory, the error for that.
template <typename Body>
HRESULT Guarded(Body body) noexcept {
    HRESULT result = E_OUTOFMEMORY;
    tb::Trap([&] { result = body(); }, [](const tb::RuntimeError&) { /* no memory */ });
    return result;
}

}  // namespace

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
    return Guarded([&]() -> HRESULT {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (!IsHelper(classId)) return CLASS_E_CLASSNOTAVAILABLE;
        const tb::Reference<IClassFactory> factory(new tb::HelperFactory(OwnFile().parent_path()));
        return factory.Get()->QueryInterface(id, object);
    });
}

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllCanUnloadNow() {
    return tb::ServedObjects::Live() == 0 ? S_OK : S_FALSE;
}

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllRegisterServer() {
    return Guarded([] { return tb::RegisterHelper(OwnFile()); });
}

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE DllUnregisterServer() {
    return Guarded([] { return tb::UnregisterHelper(); });
}
