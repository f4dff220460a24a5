// What must not stand whole: the scrambling key in anything that is built or kept, programs, libraries, tools, tests,
// sources; the key of the debug switch in programs, tests apart.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

#include "base/text.h"
#include "shell/helpers/DebugSwitch.h"
#include "sitedb/codec/Encryption.h"

namespace tb {
namespace {

namespace fs = std::filesystem;

// Each text forwards, backwards and as wide characters.
std::vector<Text> FormsOf(const std::vector<Text>& texts) {
    std::vector<Text> forms;
    for (const Text& text : texts) {
        Text wide;
        for (const char character : text) wide += {character, '\0'};
        forms.insert(forms.end(), {text, Text(text.rbegin(), text.rend()), wide});
    }
    return forms;
}

Text ContentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    Text content(fs::file_size(path), '\0');
    file.read(content.data(), static_cast<std::streamsize>(content.size()));
    return content;
}

bool Holds(const Text& content, const std::vector<Text>& needles) {
    return std::any_of(needles.begin(), needles.end(),
                       [&](const Text& needle) { return content.find(needle) != Text::npos; });
}

// The search itself must be able to find.
void ExpectFound(const Text& key, const std::vector<Text>& needles) {
    for (const Text& form : FormsOf({key})) EXPECT_TRUE(Holds("x" + form + "y", needles));
}

fs::path ThisProgram() { return fs::read_symlink("/proc/self/exe"); }

// What has been built so far in any tree, this program's own included.
std::vector<fs::path> Programs() {
    std::set<fs::path> folders{ThisProgram().parent_path()};
    const fs::path trees = fs::path(TRAWLBEAM_SOURCE) / "build";
    if (fs::exists(trees)) {
        for (const auto& tree : fs::directory_iterator(trees)) folders.insert(tree.path() / "bin");
    }
    std::vector<fs::path> programs;
    for (const fs::path& folder : folders) {
        if (!fs::is_directory(folder)) continue;
        for (const auto& entry : fs::directory_iterator(folder)) {
            if (entry.is_regular_file()) programs.push_back(entry.path());
        }
    }
    return programs;
}

TEST(ScrambleKey, StandsWholeInNoBinaryAndNoSource) {
    const Text& key = GetScrambleKey();
    EXPECT_GE(key.size(), 36U);
    EXPECT_TRUE(std::all_of(key.begin(), key.end(), [](char character) { return character > ' ' && character < 127; }));
    // One half betrays nearly as much.
    const std::vector<Text> needles = FormsOf({key.substr(0, key.size() / 2), key.substr(key.size() / 2)});
    ExpectFound(key, needles);
    std::vector<fs::path> files = Programs();
    for (const char* folder : {"src", "tests", "bench", "fuzz", "docs"}) {
        for (const auto& entry : fs::recursive_directory_iterator(fs::path(TRAWLBEAM_SOURCE) / folder)) {
            if (entry.is_regular_file()) files.push_back(entry.path());
        }
    }
    for (const fs::path& file : files) EXPECT_FALSE(Holds(ContentOf(file), needles)) << file;
}

// The switch's code is in this program too, so that the compiler's joining of pieces shows before the product is built.
TEST(DebugSwitchKey, StandsWholeInNoProgramButTests) {
    const Text key = DebugSwitch();
    EXPECT_EQ(key.size(), 8U);
    const std::vector<Text> needles = FormsOf({key, UpperCase(key), LowerCase(key)});
    ExpectFound(key, needles);
    for (const fs::path& program : Programs()) {
        const bool mayNameIt = program.filename().string().find("_test") != Text::npos && program != ThisProgram();
        EXPECT_FALSE(!mayNameIt && Holds(ContentOf(program), needles)) << program;
    }
}

}  // namespace
}  // namespace tb
