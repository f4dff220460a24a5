// The file of the site overrides as text: docs/formats/site-overrides.md.
#pragma once

#include <optional>
#include <vector>

#include "base/errors.h"

namespace tb {

struct OverridesFile {
    // The content of a file with these URLs, in this order. They stand there as they are, but for line breaks, which
    // become escapes: then each line is one URL, whatever characters it has. `date` has no apostrophe.
    static Text Written(const std::vector<Text>& urls, const Text& date);

    // What stands in a file: one of lines as Written makes them to the byte, any XML, or else the <Site> elements that
    // have an end. Raises the error of the XML reader when there is not one of those.
    static OverridesFile Read(TextView content);

    // Not decoded, in the order of the file.
    std::vector<Text> URLs;
    // Why it is no XML, when its elements were taken one by one; and how many of them had no end.
    std::optional<RuntimeError> Defect;
    size_t Lost = 0;
};

}  // namespace tb
