// What crosses the narrow C faces of the components that are files of their own on Windows: numbers, counted bytes and
// function pointers. A component exports one function, NAME_Face(version), which gives the table of that version of its
// face, or null for a version that it does not have. No exception crosses: what fails comes back as number and text.
#pragma once

#include <cstdint>

#include "base/errors.h"

namespace tb {

// How a call ended. The one who calls hands a fresh one in.
struct FaceFailure {
    // 0 when all went well.
    std::int32_t Number = 0;
    // Ends in a NUL; a longer text is cut.
    char Description[252] = {};
};

// How texts come out of a component: it calls `take` once with the bytes, which are the component's own and stay until
// `take` returns.
using FaceTake = void (*)(void* target, const char* bytes, std::size_t size) noexcept;

// For the component's side: runs `body`; what it throws goes into `failure`.
void Describe(const RuntimeError& error, FaceFailure& failure) noexcept;
template <typename Body>
void AtFace(FaceFailure* failure, Body&& body) noexcept {
    Trap(body, [&](const RuntimeError& error) { Describe(error, *failure); });
}

// For the component's side: error 5 for null.
template <typename Object>
Object& ObjectOf(void* handle) {
    if (handle == nullptr) throw Error(ErrorNumber::InvalidCall);
    return *static_cast<Object*>(handle);
}

// For the caller's side: calls a function of a face and raises what it reports.
template <typename Function, typename... Arguments>
void CallFace(Function function, Arguments... arguments) {
    FaceFailure failure;
    function(arguments..., &failure);
    if (failure.Number != 0) throw RuntimeError(failure.Number, failure.Description);
}

// For the caller's side: what `call(take, target)` hands out.
void TakeText(void* target, const char* bytes, std::size_t size) noexcept;
template <typename Call>
Text TextOfFace(Call call) {
    Text text;
    call(&TakeText, static_cast<void*>(&text));
    return text;
}

// For the caller's side: the table that the exported function `entry` of a library gives for Table::Version. Null, for
// a component that is missing, and another version raise error 429, whose text names `component`.
const void* FindFace(void* entry, std::uint32_t version, const char* component);
template <typename Table>
const Table& FaceOf(void* entry) {
    return *static_cast<const Table*>(FindFace(entry, Table::Version, Table::Component));
}

}  // namespace tb
