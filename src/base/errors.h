// The one error class of the program and the table of its numbers and texts.
#pragma once

#include <cstdint>
#include <exception>
#include <utility>

#include "base/text.h"

namespace tb {

// Numbers with a standard text. Classes add numbers of their own, with their own texts.
enum class ErrorNumber : std::int32_t {
    InvalidCall = 5,
    Overflow = 6,
    OutOfMemory = 7,
    Subscript = 9,
    TypeMismatch = 13,
    Internal = 51,
    FileNotFound = 53,
    DeviceIO = 57,
    DiskFull = 61,
    EndOfFile = 62,
    PermissionDenied = 70,
    PathFileAccess = 75,
    PathNotFound = 76,
    ObjectNotSet = 91,
    NoSuchMember = 438,
    DuplicateKey = 457,
};

// The standard text of a number; "Application-defined or object-defined error" for a number without one.
Text ErrorText(std::int32_t number);

// What every failing operation raises. `Line()` is what most log lines end in.
class RuntimeError : public std::exception {
public:
    RuntimeError(std::int32_t number, Text description, Text source = {})
        : Number(number), Description(std::move(description)), Source(std::move(source)) {}

    const char* what() const noexcept override { return Description.c_str(); }
    // Number, one blank, description.
    Text Line() const;

    std::int32_t Number;
    Text Description;
    // The operation that raised it, where the raising class names one.
    Text Source;
};

// The error of a number with its standard text, to be thrown.
RuntimeError Error(ErrorNumber number);

// What is wrong with something that somebody gave (a file, an entry, a key, an address), told for that person.
inline constexpr std::int32_t InputErrorNumber = 1100;
RuntimeError InputError(Text description);

// The error that is being handled, whatever was thrown: a RuntimeError as it is, lack of memory as 7, any other as 51.
// Call only inside a catch block.
RuntimeError CurrentError() noexcept;

// Runs `body`; anything it throws goes to `handler(const RuntimeError&)` instead of to the caller. The trap of a
// procedure is this one line: nothing propagates, `handler` writes the procedure's line. `handler` must not throw.
template <typename Body, typename Handler>
void Trap(Body&& body, Handler&& handler) noexcept {
    try {
        body();
    } catch (...) {
        handler(CurrentError());
    }
}

// As Trap, for a body that gives a result: `neutral` when it throws.
template <typename Result, typename Body, typename Handler>
Result TrapOr(Result neutral, Body&& body, Handler&& handler) noexcept {
    Trap([&] { neutral = body(); }, std::forward<Handler>(handler));
    return neutral;
}

// `parts[index]`, index from 0; error 9 outside the bounds.
template <typename Parts>
decltype(auto) At(Parts& parts, size_t index) {
    if (index >= parts.size()) throw Error(ErrorNumber::Subscript);
    return parts[index];
}

}  // namespace tb
