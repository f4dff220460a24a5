// A log that keeps the last line of level 0, to name it when an operation that only logs has failed.
#pragma once

#include "base/log.h"

namespace tb {

class LastLine : public LogSink {
public:
    void WriteLog(const Text& message, LogLevel level) noexcept override {
        if (level == LogLevel::Always) m_Line = message;
    }
    bool Writes(LogLevel level) noexcept override { return level == LogLevel::Always; }
    // The line, or `otherwise` when there was none.
    const Text& Or(const Text& otherwise) const { return m_Line.empty() ? otherwise : m_Line; }

private:
    Text m_Line;
};

}  // namespace tb
