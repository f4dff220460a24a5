// The border of the library, which on Windows is a file of its own: what it offers there, and how errors get across. An
// exception that crosses it leaves its mark on the caller's side, so what can fail is a function that throws nothing
// and tells its outcome, and an inline one around it that raises the error on the caller's side.
#pragma once

#include "base/errors.h"

// Only the file itself exports. Callers do not say that they import, so that their object files can be linked with the
// file or with the static library.
#ifdef TBXML_EXPORTS
#define TBXML_API __declspec(dllexport)
#else
#define TBXML_API
#endif

namespace tb {

struct XmlOutcome {
    // 0 when all went well.
    std::int32_t Number = 0;
    Text Description;
};

// For the library's side: the outcome of `body`.
template <typename Body>
XmlOutcome OutcomeOf(Body body) noexcept {
    try {
        body();
        return {};
    } catch (...) {
        RuntimeError error = CurrentError();
        return {error.Number, std::move(error.Description)};
    }
}

// For the caller's side.
inline void RaiseFailure(XmlOutcome outcome) {
    if (outcome.Number != 0) throw RuntimeError(outcome.Number, std::move(outcome.Description));
}

}  // namespace tb
