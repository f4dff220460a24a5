// What tbBHOCfg.dll exports.
#include <memory>

#include "components/tbBHOCfg/BHOSettings.h"
#include "platform/win32/Win32Files.h"

namespace tb {

namespace {

BHOSettings& Settings(void* configuration) { return ObjectOf<BHOSettings>(configuration); }

void Create(void** configuration, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { *configuration = std::make_unique<BHOSettings>().release(); });
}

void Destroy(void* configuration) noexcept { delete static_cast<BHOSettings*>(configuration); }

void Count(void* configuration, std::uint32_t section, std::uint32_t* count, FaceFailure* failure) noexcept {
    AtFace(failure, [&] {
        *count = static_cast<std::uint32_t>(Settings(configuration).Count(static_cast<BHOSection>(section)));
    });
}

void Add(void* configuration, std::uint32_t section, std::uint32_t* index, FaceFailure* failure) noexcept {
    AtFace(failure,
           [&] { *index = static_cast<std::uint32_t>(Settings(configuration).Add(static_cast<BHOSection>(section))); });
}

void Get(void* configuration, std::uint32_t section, std::uint32_t index, const char* name, FaceTake take, void* target,
         FaceFailure* failure) noexcept {
    AtFace(failure, [&] {
        const Text& value = Settings(configuration).Get(static_cast<BHOSection>(section), index, name);
        take(target, value.data(), value.size());
    });
}

void Set(void* configuration, std::uint32_t section, std::uint32_t index, const char* name, const char* value,
         std::size_t size, FaceFailure* failure) noexcept {
    AtFace(failure,
           [&] { Settings(configuration).Set(static_cast<BHOSection>(section), index, name, TextView(value, size)); });
}

void Save(void* configuration, const wchar_t* path, FaceFailure* failure) noexcept {
    AtFace(failure, [&] {
        Win32Files files;
        Settings(configuration).Save(files, path);
    });
}

void Load(void* configuration, const wchar_t* path, FaceFailure* failure) noexcept {
    AtFace(failure, [&] {
        Win32Files files;
        Settings(configuration).Load(files, path);
    });
}

constexpr tbBHOCfgFace Face{&Create, &Destroy, &Count, &Add, &Get, &Set, &Save, &Load};

}  // namespace

}  // namespace tb

extern "C" __declspec(dllexport) const void* tbBHOCfg_Face(std::uint32_t version) {
    return version == tb::tbBHOCfgFace::Version ? &tb::Face : nullptr;
}
