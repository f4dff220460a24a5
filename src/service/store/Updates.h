// Published versions of the program: manifests, signatures and files. Each publication becomes visible with all its
// files at once, or not at all.
#pragma once

#include <optional>

#include "service/release/Release.h"
#include "service/store/Database.h"
#include "service/store/Stamp.h"

namespace tb {

struct PublishedUpdate {
    std::int32_t Number = 0;
    // The name of a test version; empty for the version that everybody gets.
    Text Test;
    // The document, as clients take it.
    Text Manifest;
    // As its page has it; empty when it is not signed.
    Text Signature;
    // UTC.
    Date Published;
};

// Raises a StoreError when the store cannot be read or written; nothing is changed then.
class Updates {
public:
    // Of each name, the latest version and the one before are kept, for clients that are still fetching it; of test
    // versions this many altogether.
    static constexpr std::int64_t VersionsKept = 2;
    static constexpr std::int64_t TestVersionsKept = 10;

    explicit Updates(Database& database) : m_Database(database) {}

    // Keeps those files that take part in the manifest, which must have passed CheckManifest with them. Raises an
    // InputError unless the number is above all that were published, test versions included: a number is also the
    // address of its files.
    void Publish(const PublishedUpdate& update, const std::vector<ReleaseFile>& files);

    // The latest version under a name.
    std::optional<PublishedUpdate> Latest(TextView test);
    // All that are kept, latest first, without their manifests.
    std::vector<PublishedUpdate> Kept();
    // 0 when there is none.
    std::int64_t LastNumber();
    std::optional<Text> File(std::int64_t number, TextView name);

private:
    void Forget(TextView test);

    Database& m_Database;
};

}  // namespace tb
