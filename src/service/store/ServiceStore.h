// The one file that holds the service's state, and what it looks like inside.
#pragma once

#include "service/store/Database.h"

namespace tb {

// "service.db" in the folder of --data; beside it lie two files of the library while the store is in use.
std::filesystem::path ServiceStoreFile(const std::filesystem::path& folder);

// A connection to it. With OrNew the folder and the file are made when they are missing. Raises a StoreError, also for
// a file of another program or of a newer version of this one.
class ServiceStore : public Database {
public:
    ServiceStore(const std::filesystem::path& folder, Opening opening);
};

}  // namespace tb
