#include "updater/win32/OnlyUpdater.h"

#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

// The same for a folder however it was written when this program was started. Names of objects hold no paths, so it is
// hashed: FNV-1a, over 16 bits at a time.
std::uint64_t NumberOf(const std::filesystem::path& folder) {
    std::wstring path(32768, L'\0');
    path.resize(GetLongPathNameW(folder.c_str(), path.data(), static_cast<DWORD>(path.size())));
    if (path.empty()) path = folder.wstring();
    CharUpperBuffW(path.data(), static_cast<DWORD>(path.size()));
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const wchar_t unit : path) hash = (hash ^ unit) * 0x100000001B3;
    return hash;
}

}  // namespace

OwnedObject BecomeOnlyUpdater(const Text& caption, const std::filesystem::path& folder) {
    const std::wstring name = ToSystem(caption + " " + std::to_string(NumberOf(folder)));
    OwnedObject only(CreateMutexW(nullptr, FALSE, name.c_str()));
    if (GetLastError() == ERROR_ALREADY_EXISTS) only.Close();
    return only;
}

}  // namespace tb
