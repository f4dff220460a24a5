// The published versions of the program, kept in memory once they have been asked for.
// Threads: any.
#pragma once

#include <map>
#include <memory>
#include <mutex>

#include "service/store/ServiceStore.h"
#include "service/store/Updates.h"

namespace tb {

class UpdateShelf {
public:
    // A version as its pages have it.
    struct Shown {
        PublishedUpdate Update;
        // The frame around the manifest.
        Text Framed;
    };

    // Raises a StoreError when the store cannot be read; so do the others.
    explicit UpdateShelf(const std::filesystem::path& folder);

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
