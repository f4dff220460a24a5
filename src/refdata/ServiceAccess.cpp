#include "refdata/ServiceAccess.h"

#include "base/codepage.h"
#include "base/errors.h"

namespace tb {

std::shared_ptr<xmlINI> ServiceAccess::Settings() const {
    if (!Program.Settings) throw Error(ErrorNumber::ObjectNotSet);
    return Program.Settings;
}

ElementPtr ServiceAccess::Servers(TextView service) const {
    return Settings()->GlobalsFindXMLElement("SERVERS", "NAME", service);
}

std::filesystem::path ServiceAccess::DataFile(TextView name) const { return DataFolder() / TextPath(name); }

}  // namespace tb
