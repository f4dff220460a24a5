// The report of what versions run here.
#pragma once

#include "refdata/ServiceAccess.h"

namespace tb {

class VersionReport {
public:
    explicit VersionReport(ServiceAccess access) : m_Access(std::move(access)) {}

    // Posts the versions of program, system and browser to "Versions.aspx" of the service "VersionsSVR". True when a
    // server took them. A failure is one line: of level 1 from the servers, of level 0 from here; without that service
    // in the defaults data nothing is asked and nothing said.
    bool SendVersions() noexcept;

private:
    Text Body() const;

    ServiceAccess m_Access;
};

}  // namespace tb
