// The C face of tbDTab6.ocx, version 1, exported as tbDTab6_Face. tbDTab6.h is what callers use.
#pragma once

#include "components/faces/Face.h"

namespace tb {

struct tbDTab6Events {
    void* Context;
    // The user has selected that tab; not called for what the program does. It must not destroy the strip.
    void (*Selected)(void* context, std::int32_t index) noexcept;
};

// A strip is a handle of Create and lives until Destroy, on the thread that made it. Windows are the system's handles,
// places are pixels, texts are counted. Indexes, selection and errors are those of TabList; a null handle raises error
// 5, a strip whose parent window has gone error 91.
struct tbDTab6Face {
    static constexpr std::uint32_t Version = 1;
    static constexpr const char* Component = "tbDTab6";
    static constexpr const char* File = "tbDTab6.ocx";
    static constexpr const char* Entry = "tbDTab6_Face";

    // A visible child of `parent`. `events` is copied.
    void (*Create)(void* parent, std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
                   const tbDTab6Events* events, void** strip, FaceFailure* failure) noexcept;
    // Null is let pass, and a parent that has gone before.
    void (*Destroy)(void* strip) noexcept;
    void (*Window)(void* strip, void** window, FaceFailure* failure) noexcept;
    void (*Move)(void* strip, std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
                 FaceFailure* failure) noexcept;
    // Where a tab's panel belongs, in the parent's client area: left, top, width, height.
    void (*Interior)(void* strip, std::int32_t box[4], FaceFailure* failure) noexcept;
    void (*Add)(void* strip, const char* key, std::size_t keySize, const char* caption, std::size_t captionSize,
                std::int32_t* index, FaceFailure* failure) noexcept;
    void (*Remove)(void* strip, std::int32_t index, FaceFailure* failure) noexcept;
    void (*Count)(void* strip, std::int32_t* count, FaceFailure* failure) noexcept;
    void (*Find)(void* strip, const char* key, std::size_t keySize, std::int32_t* index, FaceFailure* failure) noexcept;
    void (*Caption)(void* strip, std::int32_t index, FaceTake take, void* target, FaceFailure* failure) noexcept;
    void (*Select)(void* strip, std::int32_t index, FaceFailure* failure) noexcept;
    void (*Selected)(void* strip, std::int32_t* index, FaceFailure* failure) noexcept;
};

}  // namespace tb
