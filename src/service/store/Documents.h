// The data files that clients fetch by name, framed and with the moment of their publication.
#pragma once

#include <optional>

#include "service/store/Database.h"
#include "service/store/Stamp.h"

namespace tb {

struct StoredDocument {
    // UTC. Later than that of every document published before under the name.
    Date Modified;
    // The version that the document states.
    Text Version;
    // The file as clients keep it.
    Text Framed;
};

// Raises a StoreError when the store cannot be read or written.
class Documents {
public:
    explicit Documents(Database& database, UtcNow now = SystemUtcNow);

    // "defaults.bin" and "reference.bin", from their XML. Raises an InputError for a text that is no XML or lacks
    // what clients need to take it; the old document then stays.
    StoredDocument PublishDefaults(const Text& xml);
    StoredDocument PublishReference(const Text& xml);

    std::optional<StoredDocument> Find(TextView name);
    std::optional<Date> ModifiedOf(TextView name);

private:
    StoredDocument Publish(TextView name, const Text& version, const Text& xml);

    Database& m_Database;
    UtcNow m_Now;
};

inline constexpr TextView DefaultsFile = "defaults.bin";
inline constexpr TextView ReferenceFile = "reference.bin";

}  // namespace tb
