#include "platform/win32/Module.h"

#include "platform/win32/Win32Errors.h"

namespace tb {

namespace {

// The longest path that the system has.
constexpr size_t LongestPath = 32768;

}  // namespace

HMODULE OwnModule() noexcept {
    static const wchar_t place = 0;
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, &place,
                       &module);
    return module;
}

std::filesystem::path FileOf(HMODULE module) {
    std::wstring name(LongestPath, L'\0');
    const DWORD length = GetModuleFileNameW(module, name.data(), static_cast<DWORD>(name.size()));
    if (length == 0 || length >= name.size()) throw SystemError("GetModuleFileName", GetLastError());
    name.resize(length);
    return name;
}

}  // namespace tb
