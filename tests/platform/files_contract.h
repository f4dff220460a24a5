// What every implementation of Files keeps to, as one suite for all of them, each with a kit of its own.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>

#include "fakes/Raised.h"
#include "platform/AtomicWrite.h"
#include "platform/Files.h"

namespace tb {

struct FilesKit {
    virtual ~FilesKit() = default;
    virtual Files& Storage() = 0;
    // The test's own, which exists.
    virtual std::filesystem::path Folder() = 0;
    virtual void MakeFolder(const std::filesystem::path& path) = 0;
    virtual void MakeReadOnly(const std::filesystem::path& path) = 0;
};

using MakeFilesKit = std::unique_ptr<FilesKit> (*)();

class FilesContract : public testing::TestWithParam<MakeFilesKit> {
protected:
    using Path = std::filesystem::path;

    Path In(const char* name) { return m_Kit->Folder() / std::filesystem::u8path(name); }
    void Write(const Path& path, TextView content) {
        const auto writer = m_Files.OpenForWriting(path);
        writer->Write(content);
        writer->Finish();
    }
    void WriteAtomically(const Path& path) {
        WriteFileAtomically(m_Files, path, [](FileWriter& to) { to.Write("x"); });
    }
    Text Read(const Path& path) { return ReadWholeFile(m_Files, path); }
    size_t Count() { return m_Files.List(m_Kit->Folder()).size(); }

    std::unique_ptr<FilesKit> m_Kit = GetParam()();
    Files& m_Files = m_Kit->Storage();
};

TEST_P(FilesContract, KeepsEveryByte) {
    const Path path = In("all bytes");
    Write(path, "to be emptied");
    Text content;
    for (int index = 0; index < 300000; ++index) content += static_cast<char>(index * 7 % 256);
    {
        const auto writer = m_Files.OpenForWriting(path);
        writer->Write(TextView(content).substr(0, 1000));
        writer->Write("");
        writer->Write(TextView(content).substr(1000));
        writer->Finish();
    }
    const auto reader = m_Files.OpenForReading(path);
    EXPECT_EQ(reader->Size(), content.size());
    Text pieces;
    char buffer[4099];
    while (const size_t count = reader->Read(buffer, sizeof buffer)) pieces.append(buffer, count);
    EXPECT_EQ(pieces, content);
    m_Files.Append(In("log"), "one\r\n");
    m_Files.Append(In("log"), Text("\0\xff", 2));
    EXPECT_EQ(Read(In("log")), Text("one\r\n\0\xff", 7));
}

TEST_P(FilesContract, TellsWhatIsMissing) {
    using Call = std::function<void(const Path&)>;
    const Path file = In("absent");
    m_Kit->MakeFolder(In("folder"));
    const auto expect = [](std::int32_t number, const Path& path, const std::vector<Call>& calls) {
        for (const Call& call : calls) EXPECT_EQ(Raised([&] { call(path); }), number) << &call - calls.data();
    };
    const Call read = [&](const Path& path) { m_Files.OpenForReading(path); };
    const Call write = [&](const Path& path) { m_Files.OpenForWriting(path); };
    const Call append = [&](const Path& path) { m_Files.Append(path, "x"); };
    const Call erase = [&](const Path& path) { m_Files.Delete(path); };
    expect(53, file,
           {read, erase, [&](const Path& path) { m_Files.Replace(path, In("b")); },
            [&](const Path& path) { m_Files.ClearAttributes(path); }, [&](const Path& path) { m_Files.Times(path); },
            [&](const Path& path) { m_Files.SetAttributes(path, 1); },
            [&](const Path& path) { m_Files.SetTimes(path, {}, true); }});
    expect(76, In("nowhere") / "absent", {read, write, append, erase});
    expect(75, In("folder"), {read, write, erase});
    EXPECT_FALSE(m_Files.IsReadOnly(file));
    EXPECT_TRUE(m_Files.List(In("nowhere")).empty() && m_Files.ListFolders(In("nowhere")).empty());
}

TEST_P(FilesContract, ReplacesInOneStepAndLeavesAFileAloneThatIsBeingRead) {
    const Path held = In("target");
    for (const char* content : {"new", "held"}) {
        Write(In("source"), content);
        m_Files.Replace(In("source"), held);
        EXPECT_EQ(Read(held), content);
        EXPECT_EQ(m_Files.List(m_Kit->Folder()), std::vector<Path>{"target"});
    }
    Write(In("other"), "other");
    {
        const auto reader = m_Files.OpenForReading(held);
        EXPECT_EQ(Raised([&] { m_Files.Delete(held); }), 70);
        EXPECT_EQ(Raised([&] { m_Files.OpenForWriting(held); }), 70);
        EXPECT_EQ(Raised([&] { m_Files.Replace(In("other"), held); }), 70);
        EXPECT_EQ(Raised([&] { WriteAtomically(held); }), 70);
        EXPECT_EQ(Read(held), "held");
        EXPECT_EQ(Count(), 2U);
    }
    m_Files.Delete(held);
}

TEST_P(FilesContract, KeepsReadOnlyFiles) {
    const Path path = In("fixed");
    Write(path, "fixed");
    const FileAttributes before = m_Files.Attributes(path);
    m_Kit->MakeReadOnly(path);
    const FileAttributes fixed = m_Files.Attributes(path);
    EXPECT_EQ(Raised([&] { m_Files.Delete(path); }), 70);
    EXPECT_EQ(Raised([&] { WriteAtomically(path); }), 70);
    EXPECT_EQ(Raised([&] { m_Files.SetTimes(path, {}, true); }), 70);
    EXPECT_EQ(Read(path), "fixed");
    m_Files.SetAttributes(path, before);
    EXPECT_FALSE(m_Files.IsReadOnly(path));
    m_Files.SetAttributes(path, fixed);
    EXPECT_TRUE(m_Files.IsReadOnly(path));
    m_Files.ClearAttributes(path);
    m_Files.Delete(path);
}

TEST_P(FilesContract, ListsFilesByTheirFullNames) {
    m_Kit->MakeFolder(In("folder"));
    const char* const beyondTheCodePage = "\xC5\xBElu\xC5\xA5 \xE6\x97\xA5.BIN";
    for (const char* name : {"TBDB2.BINX", "two words", beyondTheCodePage}) Write(In(name), "x");
    std::vector<Path> names = m_Files.List(m_Kit->Folder());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<Path>{"TBDB2.BINX", "two words", std::filesystem::u8path(beyondTheCodePage)}));
    EXPECT_EQ(m_Files.ListFolders(m_Kit->Folder()), std::vector<Path>{"folder"});
}

TEST_P(FilesContract, MakesFoldersOfOneLevel) {
    const Path outer = In("outer");
    EXPECT_EQ(Raised([&] { m_Files.MakeFolder(outer / "inner"); }), 76);
    m_Files.MakeFolder(outer);
    m_Files.MakeFolder(outer / "inner");
    m_Files.MakeFolder(outer);
    Write(outer / "file", "x");
    EXPECT_TRUE(m_Files.FolderExists(outer / "inner") && m_Files.Exists(outer / "file"));
    EXPECT_FALSE(m_Files.FolderExists(outer / "file") || m_Files.Exists(outer) || m_Files.Exists(outer / "nothing"));
}

TEST_P(FilesContract, KeepsTheTimesThatAFileIsGiven) {
    const Path path = In("dated");
    Write(path, "x");
    const Date winter(CivilDate{2000, 1, 1, 0, 0, 0});
    const Date summer(CivilDate{2005, 7, 15, 23, 59, 58});
    m_Files.SetTimes(path, {winter, winter, summer}, true);
    EXPECT_EQ(m_Files.Times(path).Created, winter);
    m_Files.SetTimes(path, {summer, summer, winter}, true);
    EXPECT_EQ(m_Files.Times(path).Modified, summer);
    EXPECT_EQ(m_Files.Times(path).Accessed, winter);
}

}  // namespace tb
