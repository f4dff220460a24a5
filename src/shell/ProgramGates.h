// The gates of the start as the program has them.
#pragma once

#include "refdata/Defaults.h"
#include "shell/InstallationGates.h"
#include "shell/SiteTables.h"
#include "shell/StartGates.h"

namespace tb {

class ProgramGates : public StartGates {
public:
    // All of it outlives the gates.
    ProgramGates(ServiceAccess access, SiteTables& tables)
        : m_Access(std::move(access)), m_Tables(tables), m_Installation(m_Access.Program, m_Access.Log) {}

    bool CheckLoadDefaults() override { return Defaults(m_Access).CheckLoadDefaults(); }
    bool CheckInstallPendingUpdates() override { return m_Installation.CheckInstallPendingUpdates(); }
    bool CheckName() override { return m_Installation.CheckName(); }
    bool CheckUpdaterRunning() override { return m_Installation.CheckUpdaterRunning(); }
    void AddComponents() override { m_Installation.AddComponents(); }
    bool CheckForMissingComponents() override { return m_Installation.CheckForMissingComponents(); }
    bool CheckExpireOrWarnVersion() override { return m_Installation.CheckExpireOrWarnVersion(); }
    bool CheckLoadReferenceData() override { return Reference(m_Access, m_Tables.ForLoad()).LoadReferenceData(); }

private:
    ServiceAccess m_Access;
    SiteTables& m_Tables;
    InstallationGates m_Installation;
};

}  // namespace tb
