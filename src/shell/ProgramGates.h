// The gates of the start as the program has them.
#pragma once

#include "refdata/Defaults.h"
#include "shell/SiteTables.h"
#include "shell/StartGates.h"

namespace tb {

class ProgramGates : public StartGates {
public:
    // All of it outlives the gates.
    ProgramGates(ServiceAccess access, SiteTables& tables) : m_Access(std::move(access)), m_Tables(tables) {}

    bool CheckLoadDefaults() override { return Defaults(m_Access).CheckLoadDefaults(); }
    bool CheckLoadReferenceData() override { return Reference(m_Access, m_Tables.ForLoad()).LoadReferenceData(); }

private:
    ServiceAccess m_Access;
    SiteTables& m_Tables;
};

}  // namespace tb
