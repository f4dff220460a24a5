// Files in memory, which can fail at any call: what a durable write or a load does then can be walked step by step.
#pragma once

#include <algorithm>
#include <map>
#include <set>

#include "base/errors.h"
#include "platform/Files.h"

namespace tb {

// Keeps the rules of platform/Files.h. It counts the calls that can fail: opening, Read, Size, Write, Finish, Replace,
// Delete, ClearAttributes, SetAttributes, MakeFolder, Append, SetTimes and List. Readers and writers must not outlive
// it.
class FakeFiles : public Files {
public:
    using Path = std::filesystem::path;

    // The world: set it up and look at it directly.
    std::map<Path, Text> Contents;
    std::set<Path> Folders;
    std::set<Path> ReadOnly;
    std::map<Path, FileTimes> Dates;
    // Libraries that a process has loaded: they can be read and moved, not replaced nor deleted.
    std::set<Path> Loaded;
    // The moment at which files are written.
    Date Present;
    int Zone = 0;  // hours that local time is ahead of universal time

    // The `call`-th call from now on (1 is the next one) raises `number` and does nothing, except that a Write leaves
    // the first half of its bytes. With `forGood` all later calls fail too.
    void FailAt(int call, ErrorNumber number = ErrorNumber::DiskFull, bool forGood = false) {
        m_Failing = m_Calls + call;
        m_Number = number;
        m_ForGood = forGood;
    }
    void FailNoMore() { m_Failing = 0; }
    int Calls() const { return m_Calls; }
    // Files that are open now.
    size_t OpenCount() const { return m_Readers.size() + m_Writers.size(); }

    std::unique_ptr<FileReader> OpenForReading(const Path& path) override {
        Count();
        RequireFile(path);
        RefuseIf(m_Writers.count(path) > 0);
        return std::make_unique<Reader>(*this, path);
    }
    std::unique_ptr<FileWriter> OpenForWriting(const Path& path) override {
        Count();
        RequireFolder(path);
        if (Folders.count(path) > 0) throw Error(ErrorNumber::PathFileAccess);
        RefuseIf(IsOpen(path) || IsReadOnly(path));
        Contents[path].clear();
        Dates[path] = {Present, Present, Present};
        return std::make_unique<Writer>(*this, path);
    }
    void Replace(const Path& from, const Path& to) override {
        Count();
        RequireFile(from);
        RequireFolder(to);
        RefuseIf(IsOpen(from) || IsOpen(to) || Loaded.count(to) > 0);
        if (Loaded.erase(from) > 0) Loaded.insert(to);
        Contents[to] = std::move(Contents[from]);
        Dates[to] = Dates[from];
        Contents.erase(from);
    }
    void Delete(const Path& path) override {
        Count();
        RequireFile(path);
        RefuseIf(IsOpen(path) || IsReadOnly(path) || Loaded.count(path) > 0);
        Contents.erase(path);
    }
    bool IsReadOnly(const Path& path) override { return ReadOnly.count(path) > 0; }
    FileAttributes Attributes(const Path& path) override {
        RequireFile(path);
        return IsReadOnly(path) ? 1 : 0;
    }
    void ClearAttributes(const Path& path) override {
        Count();
        RequireFile(path);
        ReadOnly.erase(path);
    }
    void SetAttributes(const Path& path, FileAttributes attributes) override {
        ClearAttributes(path);
        if (attributes != 0) ReadOnly.insert(path);
    }
    bool Exists(const Path& path) override { return Contents.count(path) > 0; }
    bool FolderExists(const Path& folder) override { return Folders.count(folder) > 0; }
    void MakeFolder(const Path& folder) override {
        Count();
        RequireFolder(folder);
        Folders.insert(folder);
    }
    void Append(const Path& path, TextView bytes) override {
        Count();
        RequireFolder(path);
        RefuseIf(IsReadOnly(path));
        Contents[path] += bytes;
    }
    FileTimes Times(const Path& path) override {
        RequireFile(path);
        return Dates[path];
    }
    void SetTimes(const Path& path, const FileTimes& times, bool local) override {
        Count();
        RequireFile(path);
        RefuseIf(IsReadOnly(path));
        const auto told = [&](const Date& date) { return local ? date : date.PlusSeconds(Zone * std::int64_t{3600}); };
        Dates[path] = {told(times.Created), told(times.Modified), told(times.Accessed)};
    }
    std::vector<Path> List(const Path& folder) override {
        Count();
        std::vector<Path> names;
        for (const auto& [path, content] : Contents) {
            if (path.parent_path() == folder) names.push_back(path.filename());
        }
        return names;
    }
    std::vector<Path> ListFolders(const Path& folder) override {
        Count();
        std::vector<Path> names;
        for (const Path& path : Folders) {
            if (path.parent_path() == folder) names.push_back(path.filename());
        }
        return names;
    }

private:
    class Reader : public FileReader {
    public:
        Reader(FakeFiles& files, Path path) : m_Files(files), m_Path(std::move(path)) {
            m_Files.m_Readers.insert(m_Path);
        }
        ~Reader() override { m_Files.m_Readers.erase(m_Files.m_Readers.find(m_Path)); }

        size_t Read(void* buffer, size_t count) override {
            m_Files.Count();
            const Text& content = m_Files.Contents.at(m_Path);
            const size_t read = content.copy(static_cast<char*>(buffer), count, m_Position);
            m_Position += read;
            return read;
        }
        std::uint64_t Size() override {
            m_Files.Count();
            return m_Files.Contents.at(m_Path).size();
        }

    private:
        FakeFiles& m_Files;
        Path m_Path;
        size_t m_Position = 0;
    };

    class Writer : public FileWriter {
    public:
        Writer(FakeFiles& files, Path path) : m_Files(files), m_Path(std::move(path)) {
            m_Files.m_Writers.insert(m_Path);
        }
        ~Writer() override { m_Files.m_Writers.erase(m_Path); }

        void Write(TextView bytes) override {
            Text& content = m_Files.Contents.at(m_Path);
            content += bytes.substr(0, bytes.size() / 2);
            m_Files.Count();
            content += bytes.substr(bytes.size() / 2);
        }
        void Finish() override {
            m_Files.Count();
            m_Files.m_Writers.erase(m_Path);
        }

    private:
        FakeFiles& m_Files;
        Path m_Path;
    };

    void Count() {
        ++m_Calls;
        if (m_Calls == m_Failing || (m_ForGood && m_Failing > 0 && m_Calls > m_Failing)) throw Error(m_Number);
    }
    void RequireFolder(const Path& path) const {
        if (Folders.count(path.parent_path()) == 0) throw Error(ErrorNumber::PathNotFound);
    }
    void RequireFile(const Path& path) const {
        RequireFolder(path);
        if (Folders.count(path) > 0) throw Error(ErrorNumber::PathFileAccess);
        if (Contents.count(path) == 0) throw Error(ErrorNumber::FileNotFound);
    }
    bool IsOpen(const Path& path) const { return m_Readers.count(path) + m_Writers.count(path) > 0; }
    static void RefuseIf(bool refused) {
        if (refused) throw Error(ErrorNumber::PermissionDenied);
    }

    std::multiset<Path> m_Readers;
    std::set<Path> m_Writers;
    int m_Calls = 0;
    int m_Failing = 0;
    bool m_ForGood = false;
    ErrorNumber m_Number = ErrorNumber::DiskFull;
};

}  // namespace tb
