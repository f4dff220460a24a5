#include "platform/win32/Win32FileVersions.h"

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

// As a file lists the languages of its strings.
struct Translation {
    WORD Language;
    WORD CodePage;
};

using VersionBlock = std::vector<char>;

VersionBlock ReadBlock(const std::filesystem::path& path) {
    DWORD ignored = 0;
    VersionBlock block(GetFileVersionInfoSizeW(path.c_str(), &ignored));
    if (!block.empty() && !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data())) {
        block.clear();
    }
    return block;
}

// Where the block keeps its strings, with a backslash behind.
std::wstring StringFolder(const VersionBlock& block) {
    Translation first{};
    void* place = nullptr;
    UINT bytes = 0;
    if (VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", &place, &bytes) && bytes >= sizeof first) {
        std::memcpy(&first, place, sizeof first);
    }
    wchar_t folder[64];
    std::swprintf(folder, std::size(folder), L"\\StringFileInfo\\%04x%04x\\", first.Language, first.CodePage);
    return folder;
}

}  // namespace

std::optional<std::vector<Text>> Win32FileVersions::Strings(const std::filesystem::path& path,
                                                            const std::vector<Text>& names) {
    const VersionBlock block = ReadBlock(path);
    if (block.empty()) return std::nullopt;
    const std::wstring folder = StringFolder(block);
    std::vector<Text> strings;
    for (const Text& name : names) {
        Text& value = strings.emplace_back();
        void* place = nullptr;
        UINT length = 0;
        if (!VerQueryValueW(block.data(), (folder + ToSystem(name)).c_str(), &place, &length)) continue;
        // The length may count the closing NUL.
        const std::wstring_view text(static_cast<const wchar_t*>(place), length);
        value = FromSystem(text.substr(0, text.find(L'\0')));
    }
    return strings;
}

}  // namespace tb
