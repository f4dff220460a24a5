// The updater's lines in the program's log, as the program writes its own. Format: docs/formats/log.md.
#pragma once

#include <filesystem>

#include "base/log.h"
#include "platform/Clock.h"
#include "platform/Files.h"

namespace tb {

class UpdaterLog : public LogSink {
public:
    // The file lies in the folder "Log" of the program's folder, which the program makes.
    UpdaterLog(Files& files, Clock& clock, std::filesystem::path programFolder, Text product)
        : m_Files(files), m_Clock(clock), m_Folder(std::move(programFolder)), m_Product(std::move(product)) {}

    // Debug lines are dropped.
    void WriteLog(const Text& message, LogLevel level) noexcept override;
    bool Writes(LogLevel level) noexcept override { return level == LogLevel::Always; }

private:
    Files& m_Files;
    Clock& m_Clock;
    const std::filesystem::path m_Folder;
    const Text m_Product;
};

}  // namespace tb
