// The daily look for newer data files.
#pragma once

#include "refdata/ServiceAccess.h"

namespace tb {

class DailyFiles {
public:
    explicit DailyFiles(ServiceAccess access) : m_Access(std::move(access)) {}

    // Fetches `Page` as the data file `File` if the servers have a later one: those of the service `ServerName`, for
    // "defaults.bin" the built-in ones. What it finds is one line of level 1, a failure one of level 0. A new file
    // comes into force at the next start.
    void GetDailyFiles(const Text& ServerName, const Text& Page, const Text& File) noexcept;

private:
    ElementPtr ServersFor(const Text& ServerName, const Text& File) const;

    ServiceAccess m_Access;
};

}  // namespace tb
