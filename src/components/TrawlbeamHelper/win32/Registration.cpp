#include "components/TrawlbeamHelper/win32/Registration.h"

#include <olectl.h>

#include "components/tbBHOCfg/HelperIdentity.h"
#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

// For all users, and for this one.
const HKEY Roots[] = {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER};

std::wstring ClassKey() { return ToSystem(Text("Software\\Classes\\CLSID\\") + HelperCLSID); }

LSTATUS Write(HKEY root, const std::wstring& key, const wchar_t* name, const std::wstring& value) {
    return RegSetKeyValueW(root, key.c_str(), name, REG_SZ, value.c_str(),
                           static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

LSTATUS WriteAll(HKEY root, const std::wstring& library) {
    const std::wstring server = ClassKey() + L"\\InprocServer32";
    LSTATUS status = Write(root, ClassKey(), nullptr, L"Trawlbeam browser helper");
    if (status == ERROR_SUCCESS) status = Write(root, server, nullptr, library);
    if (status == ERROR_SUCCESS) status = Write(root, server, L"ThreadingModel", L"Apartment");
    return status;
}

}  // namespace

HRESULT RegisterHelper(const std::filesystem::path& library) {
    for (const HKEY root : Roots) {
        if (WriteAll(root, library.wstring()) == ERROR_SUCCESS) return S_OK;
        RegDeleteTreeW(root, ClassKey().c_str());
    }
    return SELFREG_E_CLASS;
}

HRESULT UnregisterHelper() {
    HRESULT result = S_OK;
    for (const HKEY root : Roots) {
        const LSTATUS status = RegDeleteTreeW(root, ClassKey().c_str());
        if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) result = SELFREG_E_CLASS;
    }
    return result;
}

}  // namespace tb
