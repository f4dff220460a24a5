#include "updater/UpdaterLog.h"

#include "base/codepage.h"
#include "base/errors.h"

namespace tb {

void UpdaterLog::WriteLog(const Text& message, LogLevel level) noexcept {
    if (!Writes(level)) return;
    Trap(
        [&] {
            // "MM/DD/YYYY hh:mm:ss"; the file is that of the month.
            const Text now = FormatDateTime(m_Clock.Now());
            const Text name = m_Product + now.substr(6, 4) + now.substr(0, 2) + ".log";
            m_Files.Append(m_Folder / "Log" / TextPath(name), now + "   tbUpdater: " + message + "\r\n");
        },
        [](const RuntimeError&) { /* a log that cannot be written must not hurt the update */ });
}

}  // namespace tb
