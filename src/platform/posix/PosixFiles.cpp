#include "platform/posix/PosixFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "base/errors.h"
#include "platform/posix/SystemClock.h"

namespace tb {

namespace {

using Path = std::filesystem::path;
using OpenPaths = std::multiset<Path>;

constexpr mode_t PermissionBits = 07777;

[[noreturn]] void Fail(int code, const Path& about) {
    switch (code) {
    case ENOENT: {
        std::error_code ignored;
        const Path folder = about.parent_path();
        const bool folderThere = folder.empty() || std::filesystem::is_directory(folder, ignored);
        throw Error(folderThere ? ErrorNumber::FileNotFound : ErrorNumber::PathNotFound);
    }
    case EACCES:
    case EPERM:
    case EROFS:
    case ETXTBSY: throw Error(ErrorNumber::PermissionDenied);
    case ENOSPC:
    case EDQUOT:
    case EFBIG: throw Error(ErrorNumber::DiskFull);
    case EIO: throw Error(ErrorNumber::DeviceIO);
    case ENOMEM: throw Error(ErrorNumber::OutOfMemory);
    default: throw Error(ErrorNumber::PathFileAccess);
    }
}

class Descriptor {
public:
    Descriptor(const Path& name, int flags) : m_Value(::open(name.c_str(), flags | O_CLOEXEC, 0666)) {
        if (m_Value < 0) Fail(errno, name);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { Close(); }

    int Value() const { return m_Value; }
    int Close() {
        const int result = m_Value < 0 ? 0 : ::close(m_Value);
        m_Value = -1;
        return result;
    }

private:
    int m_Value;
};

class PosixReader : public FileReader {
public:
    PosixReader(Path name, std::shared_ptr<OpenPaths> open)
        : m_Path(std::move(name)), m_File(m_Path, O_RDONLY), m_Open(std::move(open)) {
        struct stat status {};
        if (::fstat(m_File.Value(), &status) != 0) Fail(errno, m_Path);
        if (S_ISDIR(status.st_mode)) throw Error(ErrorNumber::PathFileAccess);
        m_Size = static_cast<std::uint64_t>(status.st_size);
        m_Open->insert(m_Path);
    }
    PosixReader(const PosixReader&) = delete;
    PosixReader& operator=(const PosixReader&) = delete;
    ~PosixReader() override { m_Open->erase(m_Open->find(m_Path)); }

    size_t Read(void* buffer, size_t count) override {
        for (;;) {
            const ssize_t result = ::read(m_File.Value(), buffer, count);
            if (result >= 0) return static_cast<size_t>(result);
            if (errno != EINTR) Fail(errno, m_Path);
        }
    }
    std::uint64_t Size() override { return m_Size; }

private:
    Path m_Path;
    Descriptor m_File;
    std::shared_ptr<OpenPaths> m_Open;
    std::uint64_t m_Size = 0;
};

class PosixWriter : public FileWriter {
public:
    explicit PosixWriter(Path name, int how = O_TRUNC)
        : m_Path(std::move(name)), m_File(m_Path, O_WRONLY | O_CREAT | how) {}

    void Write(TextView bytes) override {
        while (!bytes.empty()) {
            const ssize_t written = ::write(m_File.Value(), bytes.data(), bytes.size());
            if (written < 0 && errno != EINTR) Fail(errno, m_Path);
            if (written > 0) bytes.remove_prefix(static_cast<size_t>(written));
        }
    }
    void Finish() override {
        if (::fsync(m_File.Value()) != 0 || m_File.Close() != 0) Fail(errno, m_Path);
    }

private:
    Path m_Path;
    Descriptor m_File;
};

void RefuseOpen(const OpenPaths& open, const Path& path) {
    if (open.count(path) > 0) throw Error(ErrorNumber::PermissionDenied);
}

template <typename Kind>
std::vector<Path> Names(const Path& folder, Kind isOfKind) {
    std::vector<Path> names;
    std::error_code failure;
    std::filesystem::directory_iterator entries(folder, failure);
    if (failure == std::errc::no_such_file_or_directory) return names;
    if (failure) Fail(failure.value(), folder);
    for (const auto& entry : entries) {
        if (isOfKind(entry, failure)) names.push_back(entry.path().filename());
    }
    return names;
}

}  // namespace

std::unique_ptr<FileReader> PosixFiles::OpenForReading(const Path& path) {
    return std::make_unique<PosixReader>(path, m_Open);
}

std::unique_ptr<FileWriter> PosixFiles::OpenForWriting(const Path& path) {
    RefuseOpen(*m_Open, path);
    return std::make_unique<PosixWriter>(path);
}

void PosixFiles::Replace(const Path& from, const Path& to) {
    RefuseOpen(*m_Open, to);
    if (::rename(from.c_str(), to.c_str()) != 0) Fail(errno, to);
}

void PosixFiles::Delete(const Path& path) {
    RefuseOpen(*m_Open, path);
    if (IsReadOnly(path)) throw Error(ErrorNumber::PermissionDenied);
    if (::unlink(path.c_str()) != 0) Fail(errno, path);
}

bool PosixFiles::IsReadOnly(const Path& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && (status.st_mode & S_IWUSR) == 0;
}

FileAttributes PosixFiles::Attributes(const Path& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) Fail(errno, path);
    return status.st_mode & PermissionBits;
}

void PosixFiles::ClearAttributes(const Path& path) { SetAttributes(path, Attributes(path) | S_IWUSR); }

void PosixFiles::SetAttributes(const Path& path, FileAttributes attributes) {
    if (::chmod(path.c_str(), attributes) != 0) Fail(errno, path);
}

bool PosixFiles::Exists(const Path& path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored);
}

bool PosixFiles::FolderExists(const Path& folder) {
    std::error_code ignored;
    return std::filesystem::is_directory(folder, ignored);
}

void PosixFiles::MakeFolder(const Path& folder) {
    if (::mkdir(folder.c_str(), 0777) != 0 && !FolderExists(folder)) Fail(errno, folder);
}

void PosixFiles::Append(const Path& path, TextView bytes) { PosixWriter(path, O_APPEND).Write(bytes); }

FileTimes PosixFiles::Times(const Path& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) Fail(errno, path);
    const Date changed = LocalDate(status.st_mtime);
    return {changed, changed, LocalDate(status.st_atime)};
}

void PosixFiles::SetTimes(const Path& path, const FileTimes& times, bool local) {
    if (IsReadOnly(path)) throw Error(ErrorNumber::PermissionDenied);
    const auto moment = [&](const Date& date) { return timespec{local ? LocalMoment(date) : date.Seconds(), 0}; };
    const timespec values[] = {moment(times.Accessed), moment(times.Modified)};
    if (::utimensat(AT_FDCWD, path.c_str(), values, 0) != 0) Fail(errno, path);
}

std::vector<Path> PosixFiles::List(const Path& folder) {
    return Names(folder, [](const auto& entry, std::error_code& failure) { return entry.is_regular_file(failure); });
}

std::vector<Path> PosixFiles::ListFolders(const Path& folder) {
    return Names(folder, [](const auto& entry, std::error_code& failure) { return entry.is_directory(failure); });
}

}  // namespace tb
