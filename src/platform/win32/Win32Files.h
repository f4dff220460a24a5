// Files of Windows. Names go to the system as wide text, so a user folder with any name works.
#pragma once

#include "platform/Files.h"

namespace tb {

class Win32Files : public Files {
public:
    // Others may read the file at the same time; nobody can write, delete or replace it while it is open.
    std::unique_ptr<FileReader> OpenForReading(const std::filesystem::path& path) override;
    // Nobody else can open the file until it is finished. A read-only file is refused with 70.
    std::unique_ptr<FileWriter> OpenForWriting(const std::filesystem::path& path) override;
    // Tries again for about a tenth of a second when the target is held, as virus scanners do with new files.
    void Replace(const std::filesystem::path& from, const std::filesystem::path& to) override;
    void Delete(const std::filesystem::path& path) override;
    bool IsReadOnly(const std::filesystem::path& path) override;
    FileAttributes Attributes(const std::filesystem::path& path) override;
    void ClearAttributes(const std::filesystem::path& path) override;
    void SetAttributes(const std::filesystem::path& path, FileAttributes attributes) override;
    bool Exists(const std::filesystem::path& path) override;
    bool FolderExists(const std::filesystem::path& folder) override;
    void MakeFolder(const std::filesystem::path& folder) override;
    void Append(const std::filesystem::path& path, TextView bytes) override;
    FileTimes Times(const std::filesystem::path& path) override;
    void SetTimes(const std::filesystem::path& path, const FileTimes& times, bool local) override;
    std::vector<std::filesystem::path> List(const std::filesystem::path& folder) override;
    std::vector<std::filesystem::path> ListFolders(const std::filesystem::path& folder) override;
};

}  // namespace tb
