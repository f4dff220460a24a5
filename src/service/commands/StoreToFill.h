// The store for a command that publishes. One that is made says so on standard error: the folder may be mistyped.
#pragma once

#include "commandline/CommandLine.h"
#include "service/store/ServiceStore.h"

namespace tb {

class StoreToFill : public ServiceStore {
public:
    explicit StoreToFill(const std::filesystem::path& folder) : ServiceStore(folder, Opening::OrNew) {
        if (IsNew()) WriteStandardError("tbservice", "made a new store, " + ServiceStoreFile(folder).string());
    }
};

}  // namespace tb
