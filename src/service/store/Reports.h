// What clients report about their versions.
#pragma once

#include <utility>
#include <vector>

#include "service/store/Database.h"
#include "service/store/Stamp.h"

namespace tb {

struct VersionReport {
    // The client's identifier.
    Text Client;
    // Versions of the program, the operating system and the browser.
    Text Program;
    Text System;
    Text Browser;
    // UTC.
    Date Received;
};

// Raises a StoreError when the store cannot be read or written.
class Reports {
public:
    // Older ones go when this many are there.
    static constexpr std::int64_t Limit = 100'000;

    explicit Reports(Database& database) : m_Database(database) {}

    // All of them, or none.
    void Add(const std::vector<VersionReport>& reports);
    std::int64_t Count();
    // Versions of the program and how many reports name them, most frequent first.
    std::vector<std::pair<Text, std::int64_t>> ByProgram();

private:
    Database& m_Database;
};

}  // namespace tb
