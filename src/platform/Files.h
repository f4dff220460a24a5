// Files and folders. Every operation raises a RuntimeError when it fails: 53 no such file, 76 no such folder, 70
// refused (in use, read-only, no right), 61 disk full, 75 any other trouble with the path, 57 any other trouble with
// the device.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include "base/date.h"
#include "base/text.h"

namespace tb {

// A file open for reading, from its beginning on. It is closed when the object goes, and cannot be deleted or replaced
// before.
class FileReader {
public:
    virtual ~FileReader() = default;
    // Up to `count` bytes into `buffer`; the number read, 0 only at the end.
    virtual size_t Read(void* buffer, size_t count) = 0;
    // Bytes in the whole file.
    virtual std::uint64_t Size() = 0;
};

// A new file being written. Without Finish the content is not promised to be there.
class FileWriter {
public:
    virtual ~FileWriter() = default;
    virtual void Write(TextView bytes) = 0;
    // Everything written is on the disk and the file is closed. Nothing may follow.
    virtual void Finish() = 0;
};

// To the second.
struct FileTimes {
    Date Created;
    Date Modified;
    Date Accessed;
};

// Read-only and the like, as the system counts them: for Attributes and SetAttributes of one system, with no meaning to
// callers.
using FileAttributes = std::uint32_t;

class Files {
public:
    virtual ~Files() = default;

    virtual std::unique_ptr<FileReader> OpenForReading(const std::filesystem::path& path) = 0;
    // An existing file is emptied.
    virtual std::unique_ptr<FileWriter> OpenForWriting(const std::filesystem::path& path) = 0;
    // Puts `from` in the place of `to`, which may exist, in one step: whoever opens `to` finds the old or the new file.
    virtual void Replace(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
    // 53 when it is not there; 70 while it is open or when it is read-only.
    virtual void Delete(const std::filesystem::path& path) = 0;
    // False also when there is no such file.
    virtual bool IsReadOnly(const std::filesystem::path& path) = 0;
    virtual FileAttributes Attributes(const std::filesystem::path& path) = 0;
    // Clears read-only, hidden and system.
    virtual void ClearAttributes(const std::filesystem::path& path) = 0;
    // Gives a file the attributes that it had when Attributes was asked.
    virtual void SetAttributes(const std::filesystem::path& path, FileAttributes attributes) = 0;
    virtual bool Exists(const std::filesystem::path& path) = 0;
    virtual bool FolderExists(const std::filesystem::path& folder) = 0;
    // One level; a folder that is there is no failure.
    virtual void MakeFolder(const std::filesystem::path& folder) = 0;
    // Opens the file for appending, or makes it, writes and closes it. Others may read it meanwhile.
    virtual void Append(const std::filesystem::path& path, TextView bytes) = 0;
    // Local times.
    virtual FileTimes Times(const std::filesystem::path& path) = 0;
    // `local` says whether the times are local ones or universal ones. Local times are those that Times tells later on,
    // in summer and in winter. Where the system keeps no creation, Times goes on telling the last change for it. 70 for
    // a read-only file; 5 for a year that the system cannot keep.
    virtual void SetTimes(const std::filesystem::path& path, const FileTimes& times, bool local) = 0;
    // Names (without folder) of the plain files in a folder, in no particular order. A folder that is not there has
    // none.
    virtual std::vector<std::filesystem::path> List(const std::filesystem::path& folder) = 0;
    // The same of the folders in it.
    virtual std::vector<std::filesystem::path> ListFolders(const std::filesystem::path& folder) = 0;
};

// The whole of a file. Error 7 when it does not fit into memory.
Text ReadWholeFile(Files& files, const std::filesystem::path& path);

}  // namespace tb
