#include "platform/win32/Win32Resources.h"

#include <windows.h>

#include <algorithm>
#include <cstring>

#include "base/errors.h"
#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

constexpr std::int32_t ResourceNotFound = 326;
constexpr const wchar_t* CustomType = L"CUSTOM";
// The system's numbers of these types; its own names are of either character.
constexpr std::int32_t ImageType = 3;
constexpr std::int32_t IconType = 14;

// What is found lies in the program's file as it is mapped; nothing is to be released. Null for null.
TextView BytesOf(HRSRC found) {
    const HMODULE program = GetModuleHandleW(nullptr);
    const HGLOBAL loaded = found != nullptr ? LoadResource(program, found) : nullptr;
    const void* const bytes = loaded != nullptr ? LockResource(loaded) : nullptr;
    if (bytes == nullptr) return {};
    return {static_cast<const char*>(bytes), SizeofResource(program, found)};
}

HRSRC NumberedResource(std::int32_t id, std::int32_t type) {
    return FindResourceW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(type));
}

template <typename Type>
Type Number(TextView bytes, size_t position) {
    Type number = 0;
    std::memcpy(&number, bytes.data() + position, sizeof number);
    return number;
}

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
    const TextView bytes = BytesOf(FindResourceW(GetModuleHandleW(nullptr), ToSystem(name).c_str(), CustomType));
    if (bytes.data() == nullptr) {
        throw RuntimeError(ResourceNotFound, "Resource with identifier '" + name + "' not found");
    }
    return Text(bytes);
}

// The program holds the list of an icon's images apart from them; in a file they stand behind it.
Text Win32Resources::Icon(std::int32_t id) {
    const TextView list = BytesOf(NumberedResource(id, IconType));
    // The head is the same in both: the number of images is its last part. So are their entries, but for the end.
    constexpr size_t Head = 6;
    constexpr size_t CommonEntry = 12;
    constexpr size_t ListEntry = CommonEntry + sizeof(std::uint16_t);
    constexpr size_t FileEntry = CommonEntry + sizeof(std::uint32_t);
    if (list.size() < Head) return {};
    const size_t count =
        std::min<size_t>(Number<std::uint16_t>(list, Head - sizeof(std::uint16_t)), (list.size() - Head) / ListEntry);
    Text file(list.substr(0, Head));
    Text images;
    for (size_t index = 0; index < count; ++index) {
        const TextView entry = list.substr(Head + index * ListEntry, ListEntry);
        const auto offset = static_cast<std::uint32_t>(Head + count * FileEntry + images.size());
        file += entry.substr(0, CommonEntry);
        file.append(reinterpret_cast<const char*>(&offset), sizeof offset);
        images += BytesOf(NumberedResource(Number<std::uint16_t>(entry, CommonEntry), ImageType));
    }
    return file + images;
}

}  // namespace tb
