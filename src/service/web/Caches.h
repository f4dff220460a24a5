// What is published, kept in memory once it has been asked for and as long as it is the latest.
// Threads: any.
#pragma once

#include <map>
#include <memory>
#include <mutex>

#include "service/store/Documents.h"
#include "service/store/ServiceStore.h"
#include "service/store/Updates.h"

namespace tb {

// The data files.
class DocumentCache {
public:
    // Raises a StoreError when the store cannot be read; so does Find.
    explicit DocumentCache(const std::filesystem::path& folder);

    // The latest document of the name, or null.
    std::shared_ptr<const StoredDocument> Find(const Text& name);

private:
    std::mutex m_Mutex;
    ServiceStore m_Store;
    std::map<Text, std::shared_ptr<const StoredDocument>> m_Documents;
};

// The versions of the program.
class UpdateCache {
public:
    // A version as its pages have it.
    struct Shown {
        PublishedUpdate Update;
        // The frame around the manifest.
        Text Framed;
    };

    // Raises a StoreError when the store cannot be read; so do the others.
    explicit UpdateCache(const std::filesystem::path& folder);

    // The latest version under the name of a test version, or under none; null without it.
    std::shared_ptr<const Shown> Latest(const Text& test);
    // A file of one that is kept, or null.
    std::shared_ptr<const Text> File(std::int64_t number, const Text& name);

private:
    void Follow();

    std::mutex m_Mutex;
    ServiceStore m_Store;
    // The last publication that the maps know of.
    std::int64_t m_Number = -1;
    std::map<Text, std::shared_ptr<const Shown>> m_Latest;
    std::map<std::pair<std::int64_t, Text>, std::shared_ptr<const Text>> m_Files;
};

}  // namespace tb
