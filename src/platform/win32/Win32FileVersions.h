// Version resources as the system reads them.
#pragma once

#include "platform/FileVersions.h"

namespace tb {

class Win32FileVersions : public FileVersions {
public:
    // In the first of the file's languages that has the string, otherwise in US English.
    std::optional<Text> FileVersion(const std::filesystem::path& path) override;
};

}  // namespace tb
