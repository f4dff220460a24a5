// The text of an update's reply, line by line. Format: docs/formats/maldb-exchange.md.
#pragma once

#include <array>

#include "sitedb/SiteRecord.h"

namespace tb {

// Takes the first line off the front of `rest`, and its end with it.
inline TextView TakeLine(TextView& rest) {
    const TextView line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(line.size() < rest.size() ? line.size() + 1 : line.size());
    return line;
}

// One change: its mark, URL, category and validated text.
struct ChangeLine {
    static constexpr size_t FieldCount = 4;

    explicit ChangeLine(TextView line) {
        for (size_t start = 0, end = 0; end != TextView::npos; start = end + 1, ++Count) {
            end = line.find(FieldEnd, start);
            if (Count < FieldCount) Fields[Count] = line.substr(start, end - start);
        }
    }
    // Other lines are passed over.
    bool IsWhole() const { return Count == FieldCount; }
    bool Adds() const { return Fields[0] == "+"; }

    std::array<TextView, FieldCount> Fields;
    size_t Count = 0;  // also those behind the known ones
};

}  // namespace tb
