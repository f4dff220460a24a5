// The one file that holds the service's state, and what it looks like inside.
#pragma once

#include "service/store/Database.h"

namespace tb {

// "service.db" in the folder of --data; beside it lie two files of the library while the store is in use.
std::filesystem::path ServiceStoreFile(const std::filesystem::path& folder);

// A connection to it. With OrNew the folder and the file are made when they are missing. People's mails are in it, so
// its files are their owner's only: those of an older store lose what rights others have. Raises a StoreError, also for
// a file of another program or of a newer version of this one, for files whose rights cannot be taken back, and, with
// Existing, for a folder without a store.
class ServiceStore : public Database {
public:
    enum class Opening { Existing, OrNew };

    ServiceStore(const std::filesystem::path& folder, Opening opening);

    // True when this connection has made it.
    bool IsNew() const { return m_IsNew; }

private:
    ServiceStore(const std::filesystem::path& folder, bool isNew);
    void BringUpToDate(const std::filesystem::path& folder);

    bool m_IsNew = false;
};

}  // namespace tb
