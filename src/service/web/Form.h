// The body of a client's post, "name=value&name=value".
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "base/text.h"

namespace tb {

class Form {
public:
    // Names and values are decoded as the program's own decoder does it, which takes every text. A piece without "=" is
    // a name without a value.
    explicit Form(TextView body);

    // The value of the first field of that name, or nothing.
    std::optional<Text> Find(TextView name) const;

private:
    std::vector<std::pair<Text, Text>> m_Fields;
};

}  // namespace tb
