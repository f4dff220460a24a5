// The log on the standard error output, for a program whose log file does not exist.
#pragma once

#include "base/log.h"
#include "platform/Clock.h"

namespace tb {

// Lines of level 0 only: "mm/dd/yyyy hh:mm:ss", three blanks, the message. Every line is one write, so that lines of
// several processes on the same output do not mix.
class StderrLog : public LogSink {
public:
    // `clock` must outlive the log.
    explicit StderrLog(Clock& clock) : m_Clock(clock) {}
    void WriteLog(const Text& message, LogLevel level) noexcept override;

private:
    Clock& m_Clock;
};

}  // namespace tb
