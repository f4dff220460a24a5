#include "refdata/DailyFiles.h"

#include "base/errors.h"
#include "refdata/Defaults.h"
#include "refdata/ServerLists.h"
#include "refdata/WebFiles.h"

namespace tb {

void DailyFiles::GetDailyFiles(const Text& ServerName, const Text& Page, const Text& File) noexcept {
    Trap(
        [&] {
            const ElementPtr servers = ServersFor(ServerName, File);
            if (servers == nullptr) return;
            WebFiles files(m_Access);
            const std::optional<Date> date = files.ServerDate(*files.MakeSender(), servers, File);
            if (!date) return;
            if (!files.IsWanted(*date, File)) {
                return m_Access.Log.WriteLog("Check for updates, current version " + File, LogLevel::Debug);
            }
            m_Access.Log.WriteLog("Check for updates, retrieve new " + File + ", date" + FormatDate(*date),
                                  LogLevel::Debug);
            files.GetFileFromWebService(ServersFor(ServerName, File), Page, File);
        },
        [&](const RuntimeError& error) {
            m_Access.Log.WriteLog("Error GetDailyFiles: " + error.Line(), LogLevel::Always);
        });
}

ElementPtr DailyFiles::ServersFor(const Text& ServerName, const Text& File) const {
    return File == Defaults::FileName ? BuiltInServers(m_Access.Program) : m_Access.Servers(ServerName);
}

}  // namespace tb
