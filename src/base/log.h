// Where lines of the log go. Rooms that have no event of their own write through this face.
#pragma once

#include <cstdint>

#include "base/text.h"

namespace tb {

// Level 0 is always written, level 1 is a debug line.
enum class LogLevel : std::int32_t { Always = 0, Debug = 1 };

class LogSink {
public:
    virtual ~LogSink() = default;
    // Never fails: a line that cannot be written is lost.
    virtual void WriteLog(const Text& message, LogLevel level) noexcept = 0;
    // False when a line of that level would be dropped now: for those who would compose one often, to ask first.
    virtual bool Writes(LogLevel /*level*/) noexcept { return true; }
};

}  // namespace tb
