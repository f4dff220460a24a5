// What the guard of the list remembers from one run of the program to the next. Format: docs/formats/list-guard.md.
#pragma once

#include <map>
#include <optional>

#include "base/date.h"
#include "base/text.h"

namespace tb {

struct GuardRecord {
    // Of the list last held while the clock could be believed; empty when there was none.
    Text NewestStamp;
    // Since when every answer of the service was held back; local time.
    std::optional<Date> HeldSince;
    // The most entries held on each day, by its midnight of local time.
    std::map<Date, std::int64_t> Days;

    // The text of the file, in its frame.
    Text Framed() const;
    // Of a file's bytes; none of one that is damaged in any way.
    static std::optional<GuardRecord> Read(TextView framed);
};

}  // namespace tb
