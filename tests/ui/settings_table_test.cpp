// The table of settings against its page and against the sources.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

#include "ui/settings/SettingsTable.h"

namespace tb {
namespace {

namespace fs = std::filesystem;

Text Content(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return Text((std::istreambuf_iterator<char>(file)), {});
}

// "SECTION/KEY" of every setting that a source reads or writes by literal names.
std::set<Text> SettingsNamedIn(const Text& source) {
    static const std::regex named(
        R"re((?:XMLString|GetDefaultedLong|GetDefaultedString|Setting)\(\s*(?:[\w.]+,\s*)?"([^"]*)",\s*"([^"]*)")re");
    static const std::regex timer(R"re((?:GetTimerInterval|IsTimerEnabled)\(\s*(?:[\w.]+,\s*)?()"([^"]*)")re");
    std::set<Text> names;
    for (const std::regex* pattern : {&named, &timer}) {
        for (std::sregex_iterator match(source.begin(), source.end(), *pattern), end; match != end; ++match) {
            const Text section = (*match)[1].matched && (*match)[1].length() > 0 ? (*match)[1].str() : "TIMERS";
            names.insert(UpperCase(section) + "/" + UpperCase((*match)[2].str()));
        }
    }
    return names;
}

TEST(SettingsTable, ItsPageIsUpToDate) {
    const fs::path page = fs::path(TRAWLBEAM_SOURCE) / "docs" / "settings.md";
    if (std::getenv("TRAWLBEAM_WRITE_DOCS") != nullptr) std::ofstream(page, std::ios::binary) << SettingsMarkdown();
    EXPECT_EQ(Content(page), SettingsMarkdown()) << "docs/settings.md is not what the table says. To write it anew: "
                                                    "TRAWLBEAM_WRITE_DOCS=1 build/native/bin/settings_test";
}

TEST(SettingsTable, NamesEverySettingThatASourceUses) {
    std::set<Text> known;
    for (const Setting& setting : SettingsTable()) {
        EXPECT_TRUE(known.insert(UpperCase(setting.Section) + "/" + UpperCase(setting.Key)).second) << setting.Key;
    }
    std::set<Text> used;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(TRAWLBEAM_SOURCE) / "src")) {
        if (entry.path().extension() != ".cpp" && entry.path().extension() != ".h") continue;
        used.merge(SettingsNamedIn(Content(entry.path())));
    }
    for (const Text& name : used) EXPECT_EQ(known.count(name), 1U) << name;
    // Both kinds are found.
    EXPECT_EQ(used.count("MAIN/KEY") + used.count("TIMERS/EVILDB_INTERVAL"), 2U);
}

}  // namespace
}  // namespace tb
