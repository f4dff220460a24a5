// The C face of MBListEx.ocx, version 1, exported as MBListEx_Face. MBListEx.h is what callers use.
#pragma once

#include "components/faces/Face.h"

namespace tb {

// What the user does; none of them is called for what the program does, none may destroy the list. Null ones are let
// pass.
struct MBListExEvents {
    void* Context;
    // Another row is selected now; -1 when none is, which may also be told on the way from one row to another.
    void (*Selected)(void* context, std::int32_t row) noexcept;
    void (*DoubleClick)(void* context, std::int32_t row) noexcept;
    void (*ColumnClick)(void* context, std::int32_t column) noexcept;
};

// A list is a handle of Create and lives until Destroy, on the thread that made it. Windows are the system's handles,
// places and widths are pixels, texts are counted. Rows, columns, selection, order and errors are those of ListRows; a
// null handle raises error 5, a list whose parent window has gone error 91.
struct MBListExFace {
    static constexpr std::uint32_t Version = 1;
    static constexpr const char* Component = "MBListEx";
    static constexpr const char* File = "MBListEx.ocx";
    static constexpr const char* Entry = "MBListEx_Face";

    // A visible child of `parent`. `events` is copied.
    void (*Create)(void* parent, std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
                   const MBListExEvents* events, void** list, FaceFailure* failure) noexcept;
    // Null is let pass, and a parent that has gone before.
    void (*Destroy)(void* list) noexcept;
    void (*Window)(void* list, void** window, FaceFailure* failure) noexcept;
    void (*Move)(void* list, std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
                 FaceFailure* failure) noexcept;
    // 0 holds back drawing until 1 follows.
    void (*Redraw)(void* list, std::int32_t on, FaceFailure* failure) noexcept;
    void (*AddColumn)(void* list, const char* title, std::size_t size, std::int32_t width, std::int32_t* column,
                      FaceFailure* failure) noexcept;
    void (*Add)(void* list, std::int32_t* row, FaceFailure* failure) noexcept;
    void (*Remove)(void* list, std::int32_t row, FaceFailure* failure) noexcept;
    void (*Clear)(void* list, FaceFailure* failure) noexcept;
    void (*Count)(void* list, std::int32_t* rows, FaceFailure* failure) noexcept;
    void (*Set)(void* list, std::int32_t row, std::int32_t column, const char* cell, std::size_t size,
                FaceFailure* failure) noexcept;
    void (*Get)(void* list, std::int32_t row, std::int32_t column, FaceTake take, void* target,
                FaceFailure* failure) noexcept;
    void (*Find)(void* list, std::int32_t column, const char* cell, std::size_t size, std::int32_t* row,
                 FaceFailure* failure) noexcept;
    // `order` is a ListOrder (0 text, 1 number); another one raises error 5.
    void (*Sort)(void* list, std::int32_t column, std::uint32_t order, std::int32_t descending,
                 FaceFailure* failure) noexcept;
    // Brings the row into sight.
    void (*Select)(void* list, std::int32_t row, FaceFailure* failure) noexcept;
    void (*Selected)(void* list, std::int32_t* row, FaceFailure* failure) noexcept;
};

}  // namespace tb
