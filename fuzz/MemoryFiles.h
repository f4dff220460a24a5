// One file in memory, for fuzzing what reads files.
#pragma once

#include <algorithm>
#include <cstring>

#include "base/errors.h"
#include "platform/Files.h"

namespace tb {

class MemoryReader : public FileReader {
public:
    explicit MemoryReader(TextView content) : m_Content(content) {}
    size_t Read(void* buffer, size_t count) override {
        const size_t run = std::min(count, m_Content.size() - m_Position);
        std::memcpy(buffer, m_Content.data() + m_Position, run);
        m_Position += run;
        return run;
    }
    std::uint64_t Size() override { return m_Content.size(); }

private:
    TextView m_Content;
    size_t m_Position = 0;
};

// Every name opens the one file for reading; nothing else is allowed.
class MemoryFiles : public Files {
public:
    explicit MemoryFiles(TextView content) : m_Content(content) {}
    std::unique_ptr<FileReader> OpenForReading(const std::filesystem::path& /*path*/) override {
        return std::make_unique<MemoryReader>(m_Content);
    }
    std::unique_ptr<FileWriter> OpenForWriting(const std::filesystem::path& /*path*/) override { Refuse(); }
    void Replace(const std::filesystem::path& /*from*/, const std::filesystem::path& /*to*/) override { Refuse(); }
    void Delete(const std::filesystem::path& /*path*/) override { Refuse(); }
    bool IsReadOnly(const std::filesystem::path& /*path*/) override { return true; }
    FileAttributes Attributes(const std::filesystem::path& /*path*/) override { return 0; }
    void ClearAttributes(const std::filesystem::path& /*path*/) override { Refuse(); }
    void SetAttributes(const std::filesystem::path& /*path*/, FileAttributes /*attributes*/) override { Refuse(); }
    bool Exists(const std::filesystem::path& /*path*/) override { return true; }
    bool FolderExists(const std::filesystem::path& /*folder*/) override { return true; }
    void MakeFolder(const std::filesystem::path& /*folder*/) override { Refuse(); }
    void Append(const std::filesystem::path& /*path*/, TextView /*bytes*/) override { Refuse(); }
    FileTimes Times(const std::filesystem::path& /*path*/) override { return {}; }
    void SetTimes(const std::filesystem::path& /*path*/, const FileTimes& /*times*/, bool /*local*/) override {
        Refuse();
    }
    std::vector<std::filesystem::path> List(const std::filesystem::path& /*folder*/) override { return {}; }
    std::vector<std::filesystem::path> ListFolders(const std::filesystem::path& /*folder*/) override { return {}; }

private:
    [[noreturn]] static void Refuse() { throw Error(ErrorNumber::PermissionDenied); }

    TextView m_Content;
};

}  // namespace tb
