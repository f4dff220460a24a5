// The C face of tbBHOCfg.dll, version 1, exported as tbBHOCfg_Face. tbBHOCfg.h is what callers use.
#pragma once

#include "components/faces/Face.h"

namespace tb {

// The parts of a configuration. The first three are one element, the others lists.
enum class BHOSection : std::uint32_t { Options, Product, Alert, Graphics, RichTexts, Strings, Components };
inline constexpr std::size_t BHOSectionCount = 7;
inline constexpr std::size_t BHOMostElements = 1000;
inline constexpr std::size_t BHOLongestValue = std::size_t{4} << 20;

// A configuration is a handle of Create, for one thread at a time, until Destroy. Names end in a NUL, values are
// counted. What each function does and raises stands at its namesake of BHOSettings; a null handle and a section
// outside the list raise error 5.
struct tbBHOCfgFace {
    static constexpr std::uint32_t Version = 1;
    static constexpr const char* Component = "tbBHOCfg";
    static constexpr const char* File = "tbBHOCfg.dll";
    static constexpr const char* Entry = "tbBHOCfg_Face";

    void (*Create)(void** configuration, FaceFailure* failure) noexcept;
    // Null is let pass.
    void (*Destroy)(void* configuration) noexcept;
    void (*Count)(void* configuration, std::uint32_t section, std::uint32_t* count, FaceFailure* failure) noexcept;
    void (*Add)(void* configuration, std::uint32_t section, std::uint32_t* index, FaceFailure* failure) noexcept;
    void (*Get)(void* configuration, std::uint32_t section, std::uint32_t index, const char* name, FaceTake take,
                void* target, FaceFailure* failure) noexcept;
    void (*Set)(void* configuration, std::uint32_t section, std::uint32_t index, const char* name, const char* value,
                std::size_t size, FaceFailure* failure) noexcept;
    void (*Save)(void* configuration, const wchar_t* path, FaceFailure* failure) noexcept;
    void (*Load)(void* configuration, const wchar_t* path, FaceFailure* failure) noexcept;
};

}  // namespace tb
