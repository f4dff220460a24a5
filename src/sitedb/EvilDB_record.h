// The record of one site, as it lies scrambled in the list. Only the parts of EvilDB include this.
#pragma once

#include <vector>

#include "base/errors.h"
#include "base/text.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

inline constexpr char FieldEnd = '\t';

// The stamp that asks a service for everything.
inline constexpr const char* NoDataStamp = "200001010000";

// The plain record of a scrambled entry, for as long as one comparison takes. Error 9 for a field that is not there.
class Record {
public:
    explicit Record(TextView scrambled)
        : m_Plain(UnscrambleByLength(scrambled)), m_Fields(SplitViews(m_Plain, FieldEnd)) {}
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;

    size_t FieldCount() const { return m_Fields.size(); }
    // Still percent-encoded, lower case, without trailing slashes.
    TextView Url() const { return At(m_Fields, 0); }
    TextView Category() const { return At(m_Fields, 1); }
    TextView Validated() const { return At(m_Fields, 2); }
    const Text& Plain() const { return m_Plain; }

private:
    Text m_Plain;
    std::vector<TextView> m_Fields;
};

}  // namespace tb
