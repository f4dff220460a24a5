// The scrambling key must stand whole in nothing that is built or kept: programs, libraries, tools, tests, sources.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "base/text.h"
#include "fakes/TestFolder.h"
#include "sitedb/codec/Encryption.h"

namespace tb {
namespace {

namespace fs = std::filesystem;

Text Wide(const Text& text) {
    Text wide;
    for (const char character : text) wide += {character, '\0'};
    return wide;
}

bool Holds(const fs::path& path, const std::vector<Text>& needles) {
    std::ifstream file(path, std::ios::binary);
    const Text content((std::istreambuf_iterator<char>(file)), {});
    return std::any_of(needles.begin(), needles.end(),
                       [&](const Text& needle) { return content.find(needle) != Text::npos; });
}

// The key, and its halves, since one half betrays nearly as much; forwards, backwards and as wide characters.
std::vector<Text> Needles() {
    const Text& key = GetScrambleKey();
    std::vector<Text> needles;
    for (const Text& part : {key.substr(0, key.size() / 2), key.substr(key.size() / 2)}) {
        needles.push_back(part);
        needles.emplace_back(part.rbegin(), part.rend());
        needles.push_back(Wide(part));
    }
    return needles;
}

TEST(ScrambleKey, IsSomeDozensOfPrintableCharacters) {
    const Text& key = GetScrambleKey();
    EXPECT_GE(key.size(), 36U);
    EXPECT_TRUE(std::all_of(key.begin(), key.end(), [](char character) { return character > ' ' && character < 127; }));
}

TEST(ScrambleKey, StandsWholeInNoBinaryAndNoSource) {
    const fs::path root = TRAWLBEAM_SOURCE;
    const std::vector<Text> needles = Needles();
    std::vector<fs::path> folders{root / "src", root / "tests", root / "bench", root / "fuzz", root / "docs"};
    int programs = 0;
    for (const auto& tree : fs::directory_iterator(root / "build")) {
        if (fs::is_directory(tree.path() / "bin")) folders.push_back(tree.path() / "bin");
    }
    for (const fs::path& place : folders) {
        if (!fs::exists(place)) continue;
        for (const auto& entry : fs::recursive_directory_iterator(place)) {
            if (!entry.is_regular_file()) continue;
            if (place.filename() == "bin") ++programs;
            EXPECT_FALSE(Holds(entry.path(), needles)) << entry.path();
        }
    }
    EXPECT_GT(programs, 1);
    // The search itself must be able to find: a file that does hold the key.
    const TestFolder folder;
    folder.Write("bait", "x" + GetScrambleKey() + "y");
    EXPECT_TRUE(Holds(folder.Path() / "bait", needles));
}

}  // namespace
}  // namespace tb
