// The program's log: one text file a month in the folder "Log", opened and closed for every line.
// Format: docs/formats/log.md.
#pragma once

#include "base/log.h"
#include "shell/helpers/App.h"

namespace tb {

// Tokens in braces stand for the product's name and parts of the present date.
inline constexpr const char* LogFilePattern = "{AppProductName}{YYYYMM}.log";

class ProgramLog : public LogSink {
public:
    explicit ProgramLog(App& app) : m_App(app) {}

    // Writes a line, unless it is a debug line, settings exist and debug mode is off; that test comes before all else.
    // An empty `logFile` is the pattern above. In debug mode the line also goes to App::DebugMessage once the activity
    // controller exists. Every failure is passed over: the line is lost.
    void WriteLog(const Text& message, const Text& logFile, LogLevel level) noexcept;
    void WriteLog(const Text& message, LogLevel level) noexcept override { WriteLog(message, {}, level); }

    bool Writes(LogLevel level) noexcept override {
        return level == LogLevel::Always || !m_App.Settings || IsDebugMode();
    }

    bool IsDebugMode() { return m_App.Debug.IsOn(); }

    // Deletes the product's log files whose month began more than `days` days ago. `folder` is the log's folder as
    // lines name it, AppPath + "\Log\". A name without digits behind the product's ends the run with one line.
    void PruneLogFiles(const Text& folder, std::int32_t days) noexcept;

private:
    Text Line(const Text& message, LogLevel level);
    Text FileName(const Text& pattern) const;
    void PruneFile(const std::filesystem::path& place, const Text& folder, const Text& name, std::int32_t days);

    App& m_App;
};

}  // namespace tb
