#include "shell/LateDefaults.h"

#include <algorithm>

#include "base/errors.h"
#include "refdata/Defaults.h"
#include "refdata/ServerLists.h"
#include "shell/InstallationGates.h"

namespace tb {

namespace {

constexpr std::int64_t ShortestPause = 60;
constexpr std::int64_t LongestPause = 900;

}  // namespace

bool GrowingPause::IsOver(const Date& now) const {
    return !m_Begun || now < *m_Begun || now.Seconds() - m_Begun->Seconds() >= m_Seconds;
}

void GrowingPause::Begin(const Date& now) {
    m_Begun = now;
    m_Seconds = std::clamp(2 * m_Seconds, ShortestPause, LongestPause);
}

void LateDefaults::LinesOnce::WriteLog(const Text& message, LogLevel level) noexcept {
    bool isNew = true;
    Trap([&] { isNew = level != LogLevel::Always || m_Written.insert(message).second; },
         [](const RuntimeError&) { /* better twice than never */ });
    m_Log.WriteLog(message, isNew ? level : LogLevel::Debug);
}

bool LateDefaults::HasServers() {
    if (!IsWaiting()) return KnowsServers();
    const bool isBack = IsBackOnline();
    if (!isBack && !m_Pause.IsOver(m_Access.Program.System.Clock.Now())) return KnowsServers();
    if (isBack) {
        m_WasOffline = false;
        m_Pause = {};
    }
    if (!KnowsServers()) TryDefaults();
    if (m_NeedsReference && m_Access.Program.Settings) TryReference();
    m_Pause.Begin(m_Access.Program.System.Clock.Now());
    return KnowsServers();
}

bool LateDefaults::IsBackOnline() {
    if (!IsWaiting()) return false;
    const bool isOnline = ServerLists(m_Access).IsOnline();
    if (!isOnline) m_WasOffline = true;
    return isOnline && m_WasOffline;
}

void LateDefaults::TryDefaults() {
    Defaults defaults(m_Access);
    defaults.RetrieveDefaults();
    if (!m_Access.Program.Settings) return;
    const bool hasFile = HasFile(Defaults::FileName);
    // One that was there already may have come from somebody else since the start.
    if (hasFile) defaults.LoadDefaults({});
    if (!KnowsServers()) {
        return Say(Text(Defaults::FileName) + (hasFile ? " names no servers" : " is missing") +
                   ": nothing is updated until it comes, trying again");
    }
    Say(Text(Defaults::FileName) + " has come: updating");
    m_Pause = {};
    m_NeedsReference = true;
    m_OwesVersions = true;
    Changed.Raise();
}

void LateDefaults::TryReference() {
    // Countries can be loaded into one table only once.
    std::unique_ptr<GeoIP> countries = m_Tables.MakeCountries();
    Reference reference(m_Access, {*countries, m_Tables.WhiteList});
    const bool isFetched = reference.RetrieveReference();
    if (!m_Access.Program.Settings) return;
    if (isFetched && reference.LoadReference({})) m_Tables.Countries = std::move(countries);
    if (isFetched) Say(Text(Reference::FileName) + " has come");
    m_NeedsReference = !isFetched && (!HasFile(Reference::FileName) || reference.IsBuiltIn());
    if (m_NeedsReference) {
        Say(Text(Reference::FileName) + " is missing: only sites of the built-in categories are blocked, trying again");
    }
}

bool LateDefaults::StopsForVersions() {
    if (!std::exchange(m_OwesVersions, false)) return false;
    return InstallationGates(m_Access.Program, m_Access.Log).CheckExpireOrWarnVersion();
}

bool LateDefaults::KnowsServers() const {
    const App& app = m_Access.Program;
    return app.Settings && app.Settings->TryGlobalsSection("SERVERS") != nullptr;
}

bool LateDefaults::HasFile(const char* name) const {
    return m_Access.Program.System.Files.Exists(m_Access.DataFile(name));
}

}  // namespace tb
