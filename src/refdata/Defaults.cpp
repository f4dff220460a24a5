#include "refdata/Defaults.h"

#include "refdata/DataFile.h"
#include "refdata/ServerLists.h"
#include "refdata/WebFiles.h"

namespace tb {

bool Defaults::RetrieveDefaults() noexcept {
    bool fetched = false;
    Trap(
        [&] {
            fetched = WebFiles(m_Access).GetFileFromWebService(BuiltInServers(m_Access.Program), FileName, FileName);
        },
        [&](const RuntimeError& error) {
            m_Access.Log.WriteLog("Error Process Defaults: " + error.Line(), LogLevel::Always);
        });
    return fetched;
}

bool Defaults::LoadDefaults(const Text& MinVersion) noexcept {
    bool loaded = false;
    Trap(
        [&] {
            const DataFile file{FileName, "Load defaults format error", "Load defaults version error"};
            const ElementPtr root = LoadDataFile(m_Access, file, MinVersion, [&] { RetrieveDefaults(); }).Root;
            if (root == nullptr) return;
            const std::shared_ptr<xmlINI> settings = m_Access.Settings();
            const Text version = root->FindAttributeValue("Version");
            if (!version.empty()) settings->ReplaceGlobals("DEFAULTVERSION", version);
            for (const ElementPtr& group : *root) {
                settings->ReplaceGlobals(UpperCase(group->FindAttributeValue("NAME")), group);
            }
            loaded = true;
        },
        [&](const RuntimeError& error) {
            m_Access.Log.WriteLog("Error Load Defaults: " + error.Line(), LogLevel::Always);
        });
    return loaded;
}

bool Defaults::CheckLoadDefaults() noexcept {
    bool stops = false;
    Trap(
        [&] {
            if (!m_Access.Program.System.Files.Exists(m_Access.DataFile(FileName))) {
                m_Access.Log.WriteLog(Text("Missing Defaults File: ") + FileName, LogLevel::Always);
                if (!RetrieveDefaults()) return;
            }
            stops = !LoadDefaults({});
        },
        [&](const RuntimeError& error) {
            m_Access.Log.WriteLog("Error Load Defaults: " + error.Line(), LogLevel::Always);
            stops = true;
        });
    return stops;
}

}  // namespace tb
