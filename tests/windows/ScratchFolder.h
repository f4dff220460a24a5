// A folder of the test's own with a name outside the code page, gone with it.
#pragma once

#include <windows.h>

#include <filesystem>

namespace tb {

class ScratchFolder {
public:
    ScratchFolder() {
        static int count = 0;
        const std::wstring name = L"Trawlbeam \x017E\x65E5 " + std::to_wstring(GetCurrentProcessId()) + L"-" +
                                  std::to_wstring(GetTickCount64()) + L"-" + std::to_wstring(++count);
        m_Path = std::filesystem::temp_directory_path() / name;
        std::filesystem::create_directory(m_Path);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder() {
        std::error_code ignored;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_Path, ignored)) {
            SetFileAttributesW(entry.path().c_str(), FILE_ATTRIBUTE_NORMAL);
        }
        std::filesystem::remove_all(m_Path, ignored);
    }

    const std::filesystem::path& Path() const { return m_Path; }

private:
    std::filesystem::path m_Path;
};

}  // namespace tb
