#include "platform/win32/Win32Registry.h"

#include "platform/win32/Handle.h"
#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

struct KeyTrait {
    using Value = HKEY;
    static Value None() { return nullptr; }
    static bool Close(Value value) { return RegCloseKey(value) == ERROR_SUCCESS; }
};

using OwnedKey = Handle<KeyTrait>;

// Longer than any name that the system takes, with the closing NUL.
constexpr DWORD LongestName = 16384;

HKEY RootKey(RegistryRoot root) {
    switch (root) {
    case RegistryRoot::ClassesRoot: return HKEY_CLASSES_ROOT;
    case RegistryRoot::CurrentUser: return HKEY_CURRENT_USER;
    case RegistryRoot::LocalMachine: break;
    }
    return HKEY_LOCAL_MACHINE;
}

OwnedKey Open(RegistryRoot root, const Text& section, REGSAM access) {
    HKEY key = nullptr;
    const LSTATUS status = RegOpenKeyExW(RootKey(root), ToSystem(section).c_str(), 0, access, &key);
    return OwnedKey(status == ERROR_SUCCESS ? key : nullptr);
}

OwnedKey OpenOrMake(RegistryRoot root, const Text& section, REGSAM access) {
    HKEY key = nullptr;
    const LSTATUS status = RegCreateKeyExW(RootKey(root), ToSystem(section).c_str(), 0, nullptr,
                                           REG_OPTION_NON_VOLATILE, access, nullptr, &key, nullptr);
    return OwnedKey(status == ERROR_SUCCESS ? key : nullptr);
}

// All names that `next(index, room, length)` gives.
template <typename Next>
std::vector<Text> Names(Next next) {
    std::vector<Text> names;
    std::wstring room(LongestName, L'\0');
    for (DWORD index = 0;; ++index) {
        DWORD length = LongestName;
        if (next(index, room.data(), &length) != ERROR_SUCCESS) return names;
        names.push_back(FromSystem({room.data(), length}));
    }
}

}  // namespace

bool Win32Registry::KeyExists(RegistryRoot root, const Text& section) {
    return static_cast<bool>(Open(root, section, KEY_READ));
}

bool Win32Registry::CreateKey(RegistryRoot root, const Text& section) {
    return static_cast<bool>(OpenOrMake(root, section, KEY_READ));
}

bool Win32Registry::DeleteKey(RegistryRoot root, const Text& section) {
    return RegDeleteKeyW(RootKey(root), ToSystem(section).c_str()) == ERROR_SUCCESS;
}

std::optional<Text> Win32Registry::ReadText(RegistryRoot root, const Text& section, const Text& name) {
    const OwnedKey key = Open(root, section, KEY_QUERY_VALUE);
    if (!key) return std::nullopt;
    const std::wstring wideName = ToSystem(name);
    std::wstring value;
    // It may grow between the two calls.
    for (;;) {
        DWORD type = 0;
        auto bytes = static_cast<DWORD>(value.size() * sizeof(wchar_t));
        auto* const place = reinterpret_cast<BYTE*>(value.data());
        const LSTATUS status =
            RegQueryValueExW(key.Get(), wideName.c_str(), nullptr, &type, bytes > 0 ? place : nullptr, &bytes);
        const bool isText = type == REG_SZ || type == REG_EXPAND_SZ;
        if ((status != ERROR_SUCCESS && status != ERROR_MORE_DATA) || !isText) return std::nullopt;
        const size_t length = bytes / sizeof(wchar_t);
        if (status == ERROR_SUCCESS && length <= value.size()) {
            value.resize(length);
            break;
        }
        value.resize(length);
    }
    // Whoever wrote it may have left out the closing NUL.
    return FromSystem(value.substr(0, value.find(L'\0')));
}

bool Win32Registry::WriteText(RegistryRoot root, const Text& section, const Text& name, const Text& value) {
    const OwnedKey key = OpenOrMake(root, section, KEY_SET_VALUE);
    const std::wstring wide = ToSystem(value);
    return key &&
           RegSetValueExW(key.Get(), ToSystem(name).c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(wide.c_str()),
                          static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

bool Win32Registry::DeleteValue(RegistryRoot root, const Text& section, const Text& name) {
    const OwnedKey key = Open(root, section, KEY_SET_VALUE);
    if (!key) return false;
    const LSTATUS status = RegDeleteValueW(key.Get(), ToSystem(name).c_str());
    return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

std::vector<Text> Win32Registry::ValueNames(RegistryRoot root, const Text& section) {
    const OwnedKey key = Open(root, section, KEY_QUERY_VALUE);
    if (!key) return {};
    return Names([&](DWORD index, wchar_t* room, DWORD* length) {
        return RegEnumValueW(key.Get(), index, room, length, nullptr, nullptr, nullptr, nullptr);
    });
}

std::vector<Text> Win32Registry::SectionNames(RegistryRoot root, const Text& section) {
    const OwnedKey key = Open(root, section, KEY_ENUMERATE_SUB_KEYS);
    if (!key) return {};
    return Names([&](DWORD index, wchar_t* room, DWORD* length) {
        return RegEnumKeyExW(key.Get(), index, room, length, nullptr, nullptr, nullptr, nullptr);
    });
}

}  // namespace tb
