// Version resources of program files.
#pragma once

#include <filesystem>
#include <optional>

#include "base/text.h"

namespace tb {

class FileVersions {
public:
    virtual ~FileVersions() = default;
    // The "FileVersion" string of a file's version resource; nothing when it has none that can be read.
    virtual std::optional<Text> FileVersion(const std::filesystem::path& path) = 0;
};

}  // namespace tb
