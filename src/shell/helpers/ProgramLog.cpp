#include "shell/helpers/ProgramLog.h"

#include "base/codepage.h"
#include "base/errors.h"
#include "base/numbers.h"

namespace tb {

namespace {

constexpr const char* LogFolder = "Log";
constexpr TextView LogExtension = ".log";

// What stands behind the product's name in the name of a log file, empty for other files.
Text BehindProduct(const Text& name, const Text& product) {
    const bool fits = name.size() >= product.size() + LogExtension.size() &&
                      UpperCase(Left(name, product.size())) == UpperCase(product) &&
                      LowerCase(name).ends_with(LogExtension);
    return fits ? name.substr(product.size()) : Text();
}

}  // namespace

void ProgramLog::WriteLog(const Text& message, const Text& logFile, LogLevel level) noexcept {
    Trap(
        [&] {
            if (!Writes(level)) return;
            const Text line = Line(message, level);
            if (m_App.HasController && IsDebugMode()) m_App.DebugMessage.Raise(line);
            const Text name = FileName(logFile.empty() ? LogFilePattern : logFile);
            m_App.System.Files.Append(m_App.Path() / LogFolder / TextPath(name), line + "\r\n");
        },
        [](const RuntimeError&) { /* a log that cannot be written must not hurt the program */ });
}

Text ProgramLog::Line(const Text& message, LogLevel level) {
    Text line = FormatDateTime(m_App.System.Clock.Now());
    line += level == LogLevel::Debug ? " D " : "   ";
    if (IsDebugMode()) line += (m_App.SessionId == 0 ? Text() : std::to_string(m_App.SessionId)) + " ";
    return line + message;
}

Text ProgramLog::FileName(const Text& pattern) const {
    const CivilDate now = m_App.System.Clock.Now().Civil();
    const auto digits = [](int value, size_t width) {
        const Text text = std::to_string(value);
        return Text(text.size() < width ? width - text.size() : 0, '0') + text;
    };
    const Text year = digits(now.Year, 4);
    const Text month = digits(now.Month, 2);
    const Text day = digits(now.Day, 2);
    Text name = ReplaceAll(pattern, "{AppProductName}", m_App.Product.ProductName);
    name = ReplaceAll(name, "{YYYY}", year);
    name = ReplaceAll(name, "{MM}", month);
    name = ReplaceAll(name, "{DD}", day);
    name = ReplaceAll(name, "{YYYYMMDD}", year + month + day);
    return ReplaceAll(name, "{YYYYMM}", year + month);
}

void ProgramLog::PruneLogFiles(const Text& folder, std::int32_t days) noexcept {
    Trap(
        [&] {
            const std::filesystem::path place = m_App.Path() / LogFolder;
            for (const std::filesystem::path& name : m_App.System.Files.List(place)) {
                PruneFile(place, folder, PathText(name), days);
            }
        },
        [&](const RuntimeError& error) { WriteLog("Error PruneLogFiles " + error.Line(), LogLevel::Always); });
}

void ProgramLog::PruneFile(const std::filesystem::path& place, const Text& folder, const Text& name,
                           std::int32_t days) {
    const Text behind = BehindProduct(name, m_App.Product.ProductName);
    if (behind.empty()) return;
    const Date month(CivilDate{ToInt32(Left(behind, 4)), ToInt32(Mid(behind, 5, 2)), 1, 0, 0, 0});
    const std::int64_t age = m_App.System.Clock.Now().Day().Seconds() - month.Seconds();
    if (age <= days * Date::SecondsPerDay) return;
    // The folder already ends in a backslash; the line has always had both.
    WriteLog("Prune file: " + folder + "\\" + name + " " + FormatDate(month), LogLevel::Debug);
    m_App.System.Files.ClearAttributes(place / TextPath(name));
    m_App.System.Files.Delete(place / TextPath(name));
}

}  // namespace tb
