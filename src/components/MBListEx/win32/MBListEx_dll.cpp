// What MBListEx.ocx exports.
#include <memory>

#include "components/MBListEx/win32/ReportList.h"

namespace tb {

namespace {

ReportList& List(void* list) { return ObjectOf<ReportList>(list); }

// For what needs the window.
ReportList& LiveList(void* list) {
    ReportList& live = List(list);
    if (live.Window() == nullptr) throw Error(ErrorNumber::ObjectNotSet);
    return live;
}

void Create(void* parent, std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
            const MBListExEvents* events, void** list, FaceFailure* failure) noexcept {
    AtFace(failure, [&] {
        *list = std::make_unique<ReportList>(static_cast<HWND>(parent), ControlBox{left, top, width, height}, *events)
                    .release();
    });
}

void Destroy(void* list) noexcept { delete static_cast<ReportList*>(list); }

void Window(void* list, void** window, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { *window = LiveList(list).Window(); });
}

void Move(void* list, std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
          FaceFailure* failure) noexcept {
    AtFace(failure, [&] { LiveList(list).Move({left, top, width, height}); });
}

void Redraw(void* list, std::int32_t on, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { LiveList(list).Redraw(on != 0); });
}

void AddColumn(void* list, const char* title, std::size_t size, std::int32_t width, std::int32_t* column,
               FaceFailure* failure) noexcept {
    AtFace(failure, [&] { *column = LiveList(list).AddColumn(Text(title, size), width); });
}

void Add(void* list, std::int32_t* row, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { LiveList(list).Rearrange([&](ListRows& rows) { *row = rows.Add(); }); });
}

void Remove(void* list, std::int32_t row, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { LiveList(list).Rearrange([&](ListRows& rows) { rows.Remove(row); }); });
}

void Clear(void* list, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { LiveList(list).Rearrange([](ListRows& rows) { rows.Clear(); }); });
}

void Count(void* list, std::int32_t* rows, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { *rows = List(list).Rows().Count(); });
}

void Set(void* list, std::int32_t row, std::int32_t column, const char* cell, std::size_t size,
         FaceFailure* failure) noexcept {
    AtFace(failure, [&] { LiveList(list).Set(row, column, Text(cell, size)); });
}

void Get(void* list, std::int32_t row, std::int32_t column, FaceTake take, void* target,
         FaceFailure* failure) noexcept {
    AtFace(failure, [&] {
        const Text& cell = List(list).Rows().Get(row, column);
        take(target, cell.data(), cell.size());
    });
}

void Find(void* list, std::int32_t column, const char* cell, std::size_t size, std::int32_t* row,
          FaceFailure* failure) noexcept {
    AtFace(failure, [&] { *row = List(list).Rows().Find(column, {cell, size}); });
}

void Sort(void* list, std::int32_t column, std::uint32_t order, std::int32_t descending,
          FaceFailure* failure) noexcept {
    AtFace(failure, [&] {
        if (order > static_cast<std::uint32_t>(ListOrder::ByNumber)) throw Error(ErrorNumber::InvalidCall);
        LiveList(list).Rearrange(
            [&](ListRows& rows) { rows.Sort(column, static_cast<ListOrder>(order), descending != 0); });
    });
}

void Select(void* list, std::int32_t row, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { LiveList(list).Select(row); });
}

void Selected(void* list, std::int32_t* row, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { *row = List(list).Rows().Selected(); });
}

constexpr MBListExFace Face{&Create, &Destroy, &Window, &Move, &Redraw, &AddColumn, &Add,    &Remove,
                            &Clear,  &Count,   &Set,    &Get,  &Find,   &Sort,      &Select, &Selected};

}  // namespace

}  // namespace tb

extern "C" __declspec(dllexport) const void* MBListEx_Face(std::uint32_t version) {
    return version == tb::MBListExFace::Version ? &tb::Face : nullptr;
}
