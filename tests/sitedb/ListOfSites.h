// A site list with its log recorded and the two built-in categories.
#pragma once

#include "fakes/RecordedLog.h"
#include "platform/posix/PosixFiles.h"
#include "sitedb/BuiltInCategories.h"
#include "sitedb/EvilDB.h"

namespace tb {

class ListOfSites : public EvilDBHost {
public:
    explicit ListOfSites(const std::filesystem::path& folder = {}) : DB(Storage, *this, folder) {
        DB.LogMessage.Connect([this](const Text& line, LogLevel level) { Log.WriteLog(line, level); });
    }
    Text CategoryName(const Text& id) override { return BuiltInCategoryName(id); }
    bool IsDebugMode() override { return Debug; }

    void Add(const Text& url, const Text& category = "2", const Text& validated = "date") {
        DB.AddToDB(url, category, validated);
    }
    // The validated text of the entry that hits, or "-".
    Text Hit(const Text& url) {
        Text category = "untouched";
        Text validated = "-";
        const bool evil = DB.IsEvil(url, category, validated);
        return evil == (category != "untouched") ? validated : "out-values without a hit";
    }

    bool Debug = false;
    RecordedLog Log;
    PosixFiles Storage;
    EvilDB DB;
};

}  // namespace tb
