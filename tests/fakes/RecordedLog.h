// A log that keeps its lines.
#pragma once

#include <utility>
#include <vector>

#include "base/log.h"

namespace tb {

class RecordedLog : public LogSink {
public:
    // Each line behind its level: "0 text" or "1 text".
    std::vector<Text> Lines;

    void WriteLog(const Text& message, LogLevel level) noexcept override {
        Lines.push_back((level == LogLevel::Always ? "0 " : "1 ") + message);
    }

    // What came since the last call.
    std::vector<Text> Take() { return std::exchange(Lines, {}); }
};

}  // namespace tb
