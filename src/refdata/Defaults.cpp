#include "refdata/Defaults.h"

#include <algorithm>

#include "refdata/DataFile.h"
#include "refdata/DataGuard.h"
#include "refdata/ServerLists.h"
#include "refdata/WebFiles.h"

namespace tb {

namespace {

void LoadGroups(const Element& root, xmlINI& settings) {
    const Text version = root.FindAttributeValue("Version");
    if (!version.empty()) settings.ReplaceGlobals("DEFAULTVERSION", version);
    for (const ElementPtr& group : root) {
        settings.ReplaceGlobals(UpperCase(group->FindAttributeValue("NAME")), group);
    }
}

bool HasServer(const ElementPtr& service) {
    return std::any_of(service->begin(), service->end(), [](const ElementPtr& server) {
        return server->FindAttributeValue("ACTIVE") == "Y" && !Trim(server->Body()).empty();
    });
}

}  // namespace

void Defaults::Check(const App& app, const Text& plain) {
    xmlINI settings = ThrowAwaySettings(app);
    LoadGroups(*DocumentRoot(plain), settings);
    const ElementPtr services = settings.TryGlobalsSection("SERVERS");
    if (services != nullptr && std::any_of(services->begin(), services->end(), HasServer)) return;
    throw Defect("it names no server in use");
}

bool Defaults::RetrieveDefaults() noexcept {
    return TrapOr(
        false,
        [&] { return WebFiles(m_Access).GetFileFromWebService(BuiltInServers(m_Access.Program), FileName, FileName); },
        [&](const RuntimeError& error) {
            m_Access.Log.WriteLog("Error Process Defaults: " + error.Line(), LogLevel::Always);
        });
}

bool Defaults::LoadDefaults(const Text& MinVersion) noexcept { return Load(FileName, MinVersion); }

bool Defaults::Load(const Text& name, const Text& MinVersion) noexcept {
    return TrapOr(
        false,
        [&] {
            const DataFile file{name, "Load defaults format error", "Load defaults version error"};
            const ElementPtr root = LoadDataFile(m_Access, file, MinVersion, [&] { RetrieveDefaults(); }).Root;
            if (root != nullptr) LoadGroups(*root, *m_Access.Settings());
            return root != nullptr;
        },
        [&](const RuntimeError& error) {
            m_Access.Log.WriteLog("Error Load Defaults: " + error.Line(), LogLevel::Always);
        });
}

bool Defaults::CheckLoadDefaults() noexcept {
    return TrapOr(
        true,
        [&] {
            bool hasFile = m_Access.Program.System.Files.Exists(m_Access.DataFile(FileName));
            if (!hasFile) {
                m_Access.Log.WriteLog(Text("Missing Defaults File: ") + FileName, LogLevel::Always);
                hasFile = RetrieveDefaults();
            }
            const Text name = DataGuard(m_Access).FileForStart(FileName);
            return (hasFile || name != FileName) && !Load(name, {});
        },
        [&](const RuntimeError& error) {
            m_Access.Log.WriteLog("Error Load Defaults: " + error.Line(), LogLevel::Always);
        });
}

}  // namespace tb
