// Version resources as the system reads them.
#pragma once

#include "platform/FileVersions.h"

namespace tb {

class Win32FileVersions : public FileVersions {
public:
    std::optional<std::vector<Text>> Strings(const std::filesystem::path& path,
                                             const std::vector<Text>& names) override;
};

}  // namespace tb
