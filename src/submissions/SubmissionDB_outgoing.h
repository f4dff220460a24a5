// Within SubmissionDB: what is known about a queue file when its answer comes.
#pragma once

#include "submissions/SubmissionDB.h"

namespace tb {

struct SubmissionDB::Outgoing {
    std::filesystem::path File;
    // The file's name for lines.
    Text Name;
    // Of the entry in the store: "EMAIL" or "URL", what the user knows it by, and its unique key.
    Text ElementName;
    Text Body;
    Text UniqueKey;
    // Sender and subject, or the URL, for the line about a refusal.
    Text Description;

    bool IsEmail() const { return ElementName == "EMAIL"; }
};

}  // namespace tb
