#include "refdata/VersionReport.h"

#include "base/errors.h"
#include "shell/helpers/SettingValues.h"
#include "shell/helpers/SystemInfo.h"

namespace tb {

bool VersionReport::SendVersions() noexcept {
    return TrapOr(
        false,
        [&] {
            const ElementPtr servers = m_Access.Servers("VersionsSVR");
            if (servers == nullptr) return false;
            m_Access.Log.WriteLog("Sending version information...", LogLevel::Debug);
            const std::unique_ptr<Sender> sender = m_Access.MakeSender();
            sender->Key(GetClientKey(m_Access.Program, true));
            sender->ReplyLimit(Sender::SmallReplyLimit);
            Text reply;
            const Text error = sender->PostRequest(servers, "Versions.aspx", Body(), reply, {});
            if (!error.empty()) m_Access.Log.WriteLog("Send versions error: " + error, LogLevel::Debug);
            return error.empty();
        },
        [&](const RuntimeError& error) {
            m_Access.Log.WriteLog("Send version error: " + error.Line(), LogLevel::Always);
        });
}

Text VersionReport::Body() const {
    const App& app = m_Access.Program;
    return "Key=" + GetClientKey(app, true) + "&AppVer=" + app.Product.Version +
           "&OSVer=" + SystemInfo(app.System.Machine).GetWindowsVersion() + "&IEVer=" + GetBrowserVersion(app) +
           "&OEVer=0&OutVer=0";
}

}  // namespace tb
