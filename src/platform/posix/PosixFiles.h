// Files of a POSIX system, with the one rule of Windows that callers rely on: a file that this object has open for
// reading cannot be deleted or replaced (error 70). A file's creation is told by its last change: no older time is
// kept.
#pragma once

#include <set>

#include "platform/Files.h"

namespace tb {

class PosixFiles : public Files {
public:
    std::unique_ptr<FileReader> OpenForReading(const std::filesystem::path& path) override;
    std::unique_ptr<FileWriter> OpenForWriting(const std::filesystem::path& path) override;
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

private:
    // Shared with the readers, which may outlive this object.
    std::shared_ptr<std::multiset<std::filesystem::path>> m_Open =
        std::make_shared<std::multiset<std::filesystem::path>>();
};

}  // namespace tb
