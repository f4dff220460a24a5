#include "platform/win32/Win32Files.h"

#include <algorithm>

#include "platform/win32/Handle.h"
#include "platform/win32/Win32Clock.h"
#include "platform/win32/Win32Errors.h"

namespace tb {

namespace {

using std::filesystem::path;

// One call moves at most this much, well below the 32 bits of its count.
constexpr size_t LargestTransfer = size_t{1} << 26;

constexpr DWORD SettableAttributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                                     FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

constexpr int ReplaceAttempts = 6;
constexpr DWORD ReplacePauseMs = 20;

bool HasAttribute(const path& name, DWORD attribute) {
    const DWORD attributes = GetFileAttributesW(name.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & attribute) != 0;
}

[[noreturn]] void Fail(const path& about, DWORD code) {
    // The system refuses a folder in the place of a file as it refuses a file without the right.
    if (code == ERROR_ACCESS_DENIED && HasAttribute(about, FILE_ATTRIBUTE_DIRECTORY)) {
        throw Error(ErrorNumber::PathFileAccess);
    }
    throw Error(FileErrorNumber(code));
}

OwnedFile Open(const path& name, DWORD access, DWORD share, DWORD disposition) {
    OwnedFile file(CreateFileW(name.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) Fail(name, GetLastError());
    return file;
}

class Win32Reader : public FileReader {
public:
    explicit Win32Reader(const path& name)
        : m_Path(name), m_File(Open(name, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING)) {}

    size_t Read(void* buffer, size_t count) override {
        DWORD read = 0;
        const auto wanted = static_cast<DWORD>(std::min(count, LargestTransfer));
        if (!ReadFile(m_File.Get(), buffer, wanted, &read, nullptr)) Fail(m_Path, GetLastError());
        return read;
    }

    std::uint64_t Size() override {
        LARGE_INTEGER size{};
        if (!GetFileSizeEx(m_File.Get(), &size)) Fail(m_Path, GetLastError());
        return static_cast<std::uint64_t>(size.QuadPart);
    }

private:
    path m_Path;
    OwnedFile m_File;
};

class Win32Writer : public FileWriter {
public:
    explicit Win32Writer(const path& name) : m_Path(name), m_File(Open(name, GENERIC_WRITE, 0, CREATE_ALWAYS)) {}

    void Write(TextView bytes) override {
        while (!bytes.empty()) {
            DWORD written = 0;
            const auto wanted = static_cast<DWORD>(std::min(bytes.size(), LargestTransfer));
            if (!WriteFile(m_File.Get(), bytes.data(), wanted, &written, nullptr)) Fail(m_Path, GetLastError());
            bytes.remove_prefix(written);
        }
    }

    void Finish() override {
        if (!FlushFileBuffers(m_File.Get()) || !m_File.Close()) Fail(m_Path, GetLastError());
    }

private:
    path m_Path;
    OwnedFile m_File;
};

// Of the folders in it, or of the plain files.
std::vector<path> Names(const path& folder, bool folders) {
    std::vector<path> names;
    WIN32_FIND_DATAW found{};
    const OwnedFind listing(FindFirstFileW((folder / L"*").c_str(), &found));
    if (!listing) {
        const DWORD code = GetLastError();
        // The root of a drive without any file is "not found"; other folders hold at least themselves.
        if (code == ERROR_PATH_NOT_FOUND || code == ERROR_FILE_NOT_FOUND) return names;
        Fail(folder, code);
    }
    do {
        const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        const path name = found.cFileName;
        if (isFolder == folders && name != L"." && name != L"..") names.push_back(name);
    } while (FindNextFileW(listing.Get(), &found));
    if (const DWORD code = GetLastError(); code != ERROR_NO_MORE_FILES) Fail(folder, code);
    return names;
}

}  // namespace

std::unique_ptr<FileReader> Win32Files::OpenForReading(const path& name) { return std::make_unique<Win32Reader>(name); }

std::unique_ptr<FileWriter> Win32Files::OpenForWriting(const path& name) {
    // An account with every right opens a read-only file, so the attribute is asked here.
    if (IsReadOnly(name)) throw Error(ErrorNumber::PermissionDenied);
    return std::make_unique<Win32Writer>(name);
}

void Win32Files::Replace(const path& from, const path& to) {
    for (int attempt = 1;; ++attempt) {
        if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) return;
        const DWORD code = GetLastError();
        const bool held =
            code == ERROR_SHARING_VIOLATION || code == ERROR_LOCK_VIOLATION || code == ERROR_ACCESS_DENIED;
        if (!held || attempt == ReplaceAttempts || IsReadOnly(to)) Fail(to, code);
        Sleep(ReplacePauseMs);
    }
}

void Win32Files::Delete(const path& name) {
    if (IsReadOnly(name)) throw Error(ErrorNumber::PermissionDenied);
    if (!DeleteFileW(name.c_str())) Fail(name, GetLastError());
}

bool Win32Files::IsReadOnly(const path& name) { return HasAttribute(name, FILE_ATTRIBUTE_READONLY); }

FileAttributes Win32Files::Attributes(const path& name) {
    const DWORD attributes = GetFileAttributesW(name.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) Fail(name, GetLastError());
    return attributes;
}

void Win32Files::ClearAttributes(const path& name) { SetAttributes(name, 0); }

void Win32Files::SetAttributes(const path& name, FileAttributes attributes) {
    // The others cannot be set, and none at all has a bit of its own.
    const DWORD settable = attributes & SettableAttributes;
    if (!SetFileAttributesW(name.c_str(), settable == 0 ? FILE_ATTRIBUTE_NORMAL : settable)) Fail(name, GetLastError());
}

bool Win32Files::Exists(const path& name) {
    const DWORD attributes = GetFileAttributesW(name.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool Win32Files::FolderExists(const path& folder) { return HasAttribute(folder, FILE_ATTRIBUTE_DIRECTORY); }

void Win32Files::MakeFolder(const path& folder) {
    if (!CreateDirectoryW(folder.c_str(), nullptr) && !FolderExists(folder)) Fail(folder, GetLastError());
}

void Win32Files::Append(const path& name, TextView bytes) {
    const OwnedFile file = Open(name, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_ALWAYS);
    DWORD written = 0;
    const auto wanted = static_cast<DWORD>(bytes.size());
    if (!WriteFile(file.Get(), bytes.data(), wanted, &written, nullptr)) Fail(name, GetLastError());
}

FileTimes Win32Files::Times(const path& name) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(name.c_str(), GetFileExInfoStandard, &data)) Fail(name, GetLastError());
    return {LocalDate(data.ftCreationTime), LocalDate(data.ftLastWriteTime), LocalDate(data.ftLastAccessTime)};
}

void Win32Files::SetTimes(const path& name, const FileTimes& times, bool local) {
    if (IsReadOnly(name)) throw Error(ErrorNumber::PermissionDenied);
    const FILETIME created = Moment(times.Created, local);
    const FILETIME accessed = Moment(times.Accessed, local);
    const FILETIME modified = Moment(times.Modified, local);
    const OwnedFile file = Open(name, FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING);
    if (!SetFileTime(file.Get(), &created, &accessed, &modified)) Fail(name, GetLastError());
}

std::vector<path> Win32Files::List(const path& folder) { return Names(folder, false); }

std::vector<path> Win32Files::ListFolders(const path& folder) { return Names(folder, true); }

}  // namespace tb
