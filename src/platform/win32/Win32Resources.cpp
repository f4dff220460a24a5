#include "platform/win32/Win32Resources.h"

#include <windows.h>

#include "base/errors.h"
#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

constexpr std::int32_t ResourceNotFound = 326;
constexpr const wchar_t* CustomType = L"CUSTOM";

}  // namespace

Text Win32Resources::String(std::int32_t id) {
    if (id < 0) return {};
    // Without room for a copy the call gives the place of the resource, which no NUL ends.
    const wchar_t* place = nullptr;
    const int length =
        LoadStringW(GetModuleHandleW(nullptr), static_cast<UINT>(id), reinterpret_cast<LPWSTR>(&place), 0);
    return length > 0 ? FromSystem({place, static_cast<size_t>(length)}) : Text();
}

Text Win32Resources::Custom(const Text& name) {
    const HMODULE program = GetModuleHandleW(nullptr);
    // What is found here lies in the program's file as it is mapped; nothing is to be released.
    const HRSRC found = FindResourceW(program, ToSystem(name).c_str(), CustomType);
    const HGLOBAL loaded = found != nullptr ? LoadResource(program, found) : nullptr;
    const void* const bytes = loaded != nullptr ? LockResource(loaded) : nullptr;
    if (bytes == nullptr) throw RuntimeError(ResourceNotFound, "Resource with identifier '" + name + "' not found");
    return {static_cast<const char*>(bytes), SizeofResource(program, found)};
}

}  // namespace tb
