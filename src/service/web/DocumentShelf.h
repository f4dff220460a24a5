// The published documents, kept in memory as long as they are the latest.
// Threads: any.
#pragma once

#include <map>
#include <memory>
#include <mutex>

#include "service/store/Documents.h"
#include "service/store/ServiceStore.h"

namespace tb {

class DocumentShelf {
public:
    // Raises a StoreError when the store cannot be read; so does Find.
    explicit DocumentShelf(const std::filesystem::path& folder);

    // The latest document of the name, or null.
    std::shared_ptr<const StoredDocument> Find(const Text& name);

private:
    std::mutex m_Mutex;
    ServiceStore m_Store;
    std::map<Text, std::shared_ptr<const StoredDocument>> m_Documents;
};

}  // namespace tb
