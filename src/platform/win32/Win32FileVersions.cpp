#include "platform/win32/Win32FileVersions.h"

#include <windows.h>

#include <cstdio>
#include <vector>

#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

// As a file lists the languages of its strings.
struct Translation {
    WORD Language;
    WORD CodePage;
};

// What files without such a list use: US English in code page 1252, in Unicode, and in none.
constexpr Translation UsualTranslations[] = {{0x0409, 1252}, {0x0409, 1200}, {0x0409, 0}};

using VersionBlock = std::vector<char>;

VersionBlock ReadBlock(const std::filesystem::path& path) {
    DWORD ignored = 0;
    VersionBlock block(GetFileVersionInfoSizeW(path.c_str(), &ignored));
    if (!block.empty() && !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data())) {
        block.clear();
    }
    return block;
}

std::vector<Translation> Translations(const VersionBlock& block) {
    void* place = nullptr;
    UINT bytes = 0;
    std::vector<Translation> list;
    if (VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", &place, &bytes)) {
        const auto* const first = static_cast<const Translation*>(place);
        list.assign(first, first + bytes / sizeof(Translation));
    }
    list.insert(list.end(), std::begin(UsualTranslations), std::end(UsualTranslations));
    return list;
}

}  // namespace

std::optional<Text> Win32FileVersions::FileVersion(const std::filesystem::path& path) {
    const VersionBlock block = ReadBlock(path);
    if (block.empty()) return std::nullopt;
    for (const Translation& translation : Translations(block)) {
        wchar_t name[64];
        std::swprintf(name, std::size(name), L"\\StringFileInfo\\%04x%04x\\FileVersion", translation.Language,
                      translation.CodePage);
        void* place = nullptr;
        UINT length = 0;
        if (!VerQueryValueW(block.data(), name, &place, &length)) continue;
        // The length may count the closing NUL.
        const std::wstring_view value(static_cast<const wchar_t*>(place), length);
        return FromSystem(value.substr(0, value.find(L'\0')));
    }
    return std::nullopt;
}

}  // namespace tb
