// The files that make up an installation, as the start found them.
#pragma once

#include <optional>
#include <vector>

#include "base/date.h"
#include "base/text.h"

namespace tb {

struct ComponentRecord {
    Text FILENAME;
    // With a trailing backslash; empty when the file has no version resource.
    Text PATHNAME;
    // Empty for a missing file, "0.0.0" for one without a version resource.
    Text VERSION;
    // Local time; nothing for a missing file.
    std::optional<Date> CREATEDATE;
    std::optional<Date> MODIFIEDDATE;
    bool REQUIRED = false;
    bool MISSING = false;
};

// In the order of entering, found by file name without regard to case.
class ComponentList {
public:
    // Error 457 when the file is entered already.
    void Add(ComponentRecord record);
    // In the place of the record of that file; error 5 when there is none.
    void Replace(ComponentRecord record);
    // Error 5 when there is no record of that file.
    const ComponentRecord& Item(TextView fileName) const;
    // Null when there is none. The record lasts until the list changes.
    const ComponentRecord* Find(TextView fileName) const;

    std::vector<ComponentRecord>::const_iterator begin() const { return m_Records.begin(); }
    std::vector<ComponentRecord>::const_iterator end() const { return m_Records.end(); }

private:
    std::vector<ComponentRecord> m_Records;
};

}  // namespace tb
