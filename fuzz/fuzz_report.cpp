// A post to the service's page of version reports: whatever it holds, it has a key or is refused, no field is longer
// than what is stored, and the same report written anew is read as the same.
#include <cstdlib>

#include "service/web/ServicePages.h"
#include "sitedb/codec/UrlEncode.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto report = tb::ReadReport({reinterpret_cast<const char*>(data), size});
    if (!report) return 0;
    const std::pair<const char*, tb::Text tb::VersionReport::*> fields[] = {{"Key=", &tb::VersionReport::Client},
                                                                            {"&AppVer=", &tb::VersionReport::Program},
                                                                            {"&OSVer=", &tb::VersionReport::System},
                                                                            {"&IEVer=", &tb::VersionReport::Browser}};
    tb::Text form;
    for (const auto& [name, field] : fields) form += name + tb::UrlEncode((*report).*field);
    const auto again = tb::ReadReport(form);
    if (!again) std::abort();
    for (const auto& [name, field] : fields) {
        if (((*report).*field).size() > 128 || (*report).*field != (*again).*field) std::abort();
    }
    return 0;
}
