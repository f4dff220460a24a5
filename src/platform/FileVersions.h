// Version resources of program files.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "base/text.h"

namespace tb {

class FileVersions {
public:
    virtual ~FileVersions() = default;
    // The strings of these names in a file's version resource, in their order, each empty that is not there; nothing
    // when the file has no version resource that can be read. They are those of the first language and code page that
    // the resource lists, and of language 0 and code page 0 where it lists none.
    virtual std::optional<std::vector<Text>> Strings(const std::filesystem::path& path,
                                                     const std::vector<Text>& names) = 0;
};

}  // namespace tb
