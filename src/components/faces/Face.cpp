#include "components/faces/Face.h"

namespace tb {

namespace {

constexpr std::int32_t CannotCreate = 429;

}  // namespace

void Describe(const RuntimeError& error, FaceFailure& failure) noexcept {
    // Zero would pass for success.
    failure.Number = error.Number != 0 ? error.Number : static_cast<std::int32_t>(ErrorNumber::Internal);
    const std::size_t size = error.Description.copy(failure.Description, sizeof failure.Description - 1);
    failure.Description[size] = '\0';
}

void TakeText(void* target, const char* bytes, std::size_t size) noexcept {
    Trap([&] { static_cast<Text*>(target)->assign(bytes, size); },
         [](const RuntimeError&) { /* without memory the text stays empty */ });
}

const void* FindFace(void* entry, std::uint32_t version, const char* component) {
    using Entry = const void* (*)(std::uint32_t);
    const void* const table = entry == nullptr ? nullptr : reinterpret_cast<Entry>(entry)(version);
    if (table == nullptr) {
        throw RuntimeError(CannotCreate, Text("Component can't create object: ") + component +
                                             (entry == nullptr ? " is missing" : " has another version"));
    }
    return table;
}

}  // namespace tb
