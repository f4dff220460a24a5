// A folder of the test's own, gone with it.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "base/text.h"

namespace tb {

class TestFolder {
public:
    TestFolder() {
        Text name = (std::filesystem::temp_directory_path() / "trawlbeam-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the test");
        m_Path = name;
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    ~TestFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_Path, ignored);
    }

    const std::filesystem::path& Path() const { return m_Path; }

    Text Read(const Text& name) const {
        std::ifstream file(m_Path / name, std::ios::binary);
        return Text((std::istreambuf_iterator<char>(file)), {});
    }
    void Write(const Text& name, const Text& content) const {
        std::ofstream(m_Path / name, std::ios::binary) << content;
    }
    // Names of the files, joined by blanks in text order.
    Text Names() const {
        std::vector<Text> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_Path))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return Join(names, " ");
    }

private:
    std::filesystem::path m_Path;
};

}  // namespace tb
