#include "platform/win32/StderrLog.h"

#include <windows.h>

#include "base/errors.h"

namespace tb {

void StderrLog::WriteLog(const Text& message, LogLevel level) noexcept {
    if (level != LogLevel::Always) return;
    Trap(
        [&] {
            const Text line = FormatDateTime(m_Clock.Now()) + "   " + message + "\r\n";
            DWORD written = 0;
            WriteFile(GetStdHandle(STD_ERROR_HANDLE), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
        },
        [](const RuntimeError&) { /* a line that cannot be written is lost */ });
}

}  // namespace tb
