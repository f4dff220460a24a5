// What every implementation of Files keeps to, as one suite for all of them. A platform gives a kit: `Files&
// Storage()`, a folder of the test's own `Folder()` that exists, `MakeFolder(path)` and `MakeReadOnly(path)`.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>

#include "fakes/Raised.h"
#include "platform/AtomicWrite.h"
#include "platform/Files.h"

namespace tb {

template <typename Kit>
class FilesContract : public testing::Test {
protected:
    Files& Storage() { return m_Kit.Storage(); }
    std::filesystem::path In(const char* name) { return m_Kit.Folder() / std::filesystem::u8path(name); }
    void Write(const std::filesystem::path& path, TextView content) {
        const auto writer = Storage().OpenForWriting(path);
        writer->Write(content);
        writer->Finish();
    }
    Text Read(const std::filesystem::path& path) { return ReadWholeFile(Storage(), path); }

    Kit m_Kit;
};

TYPED_TEST_SUITE_P(FilesContract);

TYPED_TEST_P(FilesContract, KeepsEveryByte) {
    Text content;
    for (int index = 0; index < 300000; ++index) content += static_cast<char>(index * 7 % 256);
    {
        const auto writer = this->Storage().OpenForWriting(this->In("all bytes"));
        writer->Write(TextView(content).substr(0, 1000));
        writer->Write("");
        writer->Write(TextView(content).substr(1000));
        writer->Finish();
    }
    EXPECT_EQ(this->Read(this->In("all bytes")), content);

    const auto reader = this->Storage().OpenForReading(this->In("all bytes"));
    EXPECT_EQ(reader->Size(), content.size());
    Text pieces;
    char buffer[4099];
    while (const size_t count = reader->Read(buffer, sizeof buffer)) pieces.append(buffer, count);
    EXPECT_EQ(pieces, content);
    EXPECT_EQ(reader->Read(buffer, sizeof buffer), 0U);
}

TYPED_TEST_P(FilesContract, EmptiesAFileThatIsWrittenAnew) {
    this->Write(this->In("a"), "long before");
    this->Write(this->In("a"), "new");
    EXPECT_EQ(this->Read(this->In("a")), "new");
    this->Write(this->In("a"), "");
    EXPECT_EQ(this->Read(this->In("a")), "");
}

TYPED_TEST_P(FilesContract, TellsAMissingFileFromAMissingFolder) {
    Files& files = this->Storage();
    const auto file = this->In("absent");
    const auto folder = this->In("nowhere") / "absent";
    EXPECT_EQ(Raised([&] { files.OpenForReading(file); }), 53);
    EXPECT_EQ(Raised([&] { files.OpenForReading(folder); }), 76);
    EXPECT_EQ(Raised([&] { files.OpenForWriting(folder); }), 76);
    EXPECT_EQ(Raised([&] { files.Delete(file); }), 53);
    EXPECT_EQ(Raised([&] { files.Delete(folder); }), 76);
    EXPECT_EQ(Raised([&] { files.Replace(file, this->In("b")); }), 53);
    EXPECT_FALSE(files.IsReadOnly(file));
    EXPECT_TRUE(files.List(this->In("nowhere")).empty() && files.ListFolders(this->In("nowhere")).empty());
}

TYPED_TEST_P(FilesContract, TakesNoFolderForAFile) {
    this->m_Kit.MakeFolder(this->In("folder"));
    EXPECT_EQ(Raised([&] { this->Storage().OpenForReading(this->In("folder")); }), 75);
    EXPECT_EQ(Raised([&] { this->Storage().OpenForWriting(this->In("folder")); }), 75);
    EXPECT_EQ(Raised([&] { this->Storage().Delete(this->In("folder")); }), 75);
}

TYPED_TEST_P(FilesContract, ReplacesInOneStep) {
    this->Write(this->In("new"), "new");
    this->Storage().Replace(this->In("new"), this->In("target"));
    EXPECT_EQ(this->Read(this->In("target")), "new");
    this->Write(this->In("newer"), "newer");
    this->Storage().Replace(this->In("newer"), this->In("target"));
    EXPECT_EQ(this->Read(this->In("target")), "newer");
    EXPECT_EQ(this->Storage().List(this->m_Kit.Folder()), std::vector<std::filesystem::path>{"target"});
}

TYPED_TEST_P(FilesContract, LeavesAFileAloneThatIsBeingRead) {
    this->Write(this->In("held"), "held");
    this->Write(this->In("other"), "other");
    {
        const auto reader = this->Storage().OpenForReading(this->In("held"));
        const auto second = this->Storage().OpenForReading(this->In("held"));
        EXPECT_EQ(Raised([&] { this->Storage().Delete(this->In("held")); }), 70);
        EXPECT_EQ(Raised([&] { this->Storage().OpenForWriting(this->In("held")); }), 70);
        EXPECT_EQ(Raised([&] { this->Storage().Replace(this->In("other"), this->In("held")); }), 70);
        EXPECT_EQ(Raised([&] {
                      WriteFileAtomically(this->Storage(), this->In("held"), [](FileWriter& to) { to.Write("x"); });
                  }),
                  70);
        EXPECT_EQ(this->Read(this->In("held")), "held");
        EXPECT_EQ(this->Storage().List(this->m_Kit.Folder()).size(), 2U);
    }
    this->Storage().Delete(this->In("held"));
    EXPECT_EQ(Raised([&] { this->Storage().OpenForReading(this->In("held")); }), 53);
}

TYPED_TEST_P(FilesContract, RefusesToDeleteOrOverwriteAReadOnlyFile) {
    this->Write(this->In("fixed"), "fixed");
    EXPECT_FALSE(this->Storage().IsReadOnly(this->In("fixed")));
    this->m_Kit.MakeReadOnly(this->In("fixed"));
    EXPECT_TRUE(this->Storage().IsReadOnly(this->In("fixed")));
    EXPECT_EQ(Raised([&] { this->Storage().Delete(this->In("fixed")); }), 70);
    EXPECT_EQ(
        Raised([&] { WriteFileAtomically(this->Storage(), this->In("fixed"), [](FileWriter& to) { to.Write("x"); }); }),
        70);
    EXPECT_EQ(this->Read(this->In("fixed")), "fixed");
    EXPECT_EQ(this->Storage().List(this->m_Kit.Folder()).size(), 1U);
}

TYPED_TEST_P(FilesContract, ListsFilesByTheirFullNames) {
    EXPECT_TRUE(this->Storage().List(this->m_Kit.Folder()).empty());
    this->m_Kit.MakeFolder(this->In("folder"));
    for (const char* name : {"TBDB2.BINX", "two words", "\xC5\xBElu\xC5\xA5 \xE6\x97\xA5.BIN"})
        this->Write(this->In(name), "x");
    std::vector<std::filesystem::path> names = this->Storage().List(this->m_Kit.Folder());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::filesystem::path>{
                         "TBDB2.BINX", "two words", std::filesystem::u8path("\xC5\xBElu\xC5\xA5 \xE6\x97\xA5.BIN")}));
    EXPECT_EQ(this->Storage().ListFolders(this->m_Kit.Folder()), std::vector<std::filesystem::path>{"folder"});
}

TYPED_TEST_P(FilesContract, AppendsToAFileOrMakesIt) {
    this->Storage().Append(this->In("log"), "one\r\n");
    this->Storage().Append(this->In("log"), Text("\0\xff", 2));
    this->Storage().Append(this->In("log"), "");
    EXPECT_EQ(this->Read(this->In("log")), Text("one\r\n\0\xff", 7));
    EXPECT_EQ(Raised([&] { this->Storage().Append(this->In("nowhere") / "log", "x"); }), 76);
}

TYPED_TEST_P(FilesContract, MakesFoldersOfOneLevel) {
    Files& files = this->Storage();
    EXPECT_EQ(Raised([&] { files.MakeFolder(this->In("outer") / "inner"); }), 76);
    files.MakeFolder(this->In("outer"));
    files.MakeFolder(this->In("outer") / "inner");
    EXPECT_EQ(Raised([&] { files.MakeFolder(this->In("outer")); }), 0) << "it is there";
    this->Write(this->In("outer") / "file", "x");
    EXPECT_TRUE(files.FolderExists(this->In("outer") / "inner"));
    EXPECT_FALSE(files.FolderExists(this->In("outer") / "file"));
    EXPECT_FALSE(files.FolderExists(this->In("nowhere")));
    EXPECT_TRUE(files.Exists(this->In("outer") / "file"));
    EXPECT_FALSE(files.Exists(this->In("outer")));
    EXPECT_FALSE(files.Exists(this->In("nowhere") / "file"));
}

TYPED_TEST_P(FilesContract, DeletesAReadOnlyFileWhoseAttributesWereCleared) {
    this->Write(this->In("fixed"), "fixed");
    this->m_Kit.MakeReadOnly(this->In("fixed"));
    this->Storage().ClearAttributes(this->In("fixed"));
    EXPECT_FALSE(this->Storage().IsReadOnly(this->In("fixed")));
    this->Storage().Delete(this->In("fixed"));
    EXPECT_FALSE(this->Storage().Exists(this->In("fixed")));
    EXPECT_EQ(Raised([&] { this->Storage().ClearAttributes(this->In("fixed")); }), 53);
    EXPECT_EQ(Raised([&] { this->Storage().Times(this->In("fixed")); }), 53);
}

TYPED_TEST_P(FilesContract, KeepsTheTimesThatAFileIsGiven) {
    Files& files = this->Storage();
    const auto path = this->In("dated");
    this->Write(path, "x");
    const Date winter(CivilDate{2000, 1, 1, 0, 0, 0});
    const Date summer(CivilDate{2005, 7, 15, 23, 59, 58});
    for (const Date& date : {winter, summer}) {
        files.SetTimes(path, {date, date, date}, true);
        EXPECT_EQ(files.Times(path).Created, date);
    }
    files.SetTimes(path, {summer, summer, winter}, true);
    EXPECT_EQ(files.Times(path).Modified, summer);
    EXPECT_EQ(files.Times(path).Accessed, winter);
    EXPECT_EQ(Raised([&] { files.SetTimes(this->In("absent"), {}, true); }), 53);
}

TYPED_TEST_P(FilesContract, GivesAFileBackTheAttributesItHad) {
    Files& files = this->Storage();
    const auto path = this->In("fixed");
    this->Write(path, "x");
    const FileAttributes before = files.Attributes(path);
    this->m_Kit.MakeReadOnly(path);
    const FileAttributes fixed = files.Attributes(path);
    EXPECT_EQ(Raised([&] { files.SetTimes(path, {}, true); }), 70);
    files.SetAttributes(path, before);
    EXPECT_FALSE(files.IsReadOnly(path));
    files.SetAttributes(path, fixed);
    EXPECT_TRUE(files.IsReadOnly(path));
    EXPECT_EQ(files.Attributes(path), fixed);
    EXPECT_EQ(Raised([&] { files.Attributes(this->In("absent")); }), 53);
    EXPECT_EQ(Raised([&] { files.SetAttributes(this->In("absent"), fixed); }), 53);
}

REGISTER_TYPED_TEST_SUITE_P(FilesContract, KeepsEveryByte, EmptiesAFileThatIsWrittenAnew,
                            TellsAMissingFileFromAMissingFolder, TakesNoFolderForAFile, ReplacesInOneStep,
                            LeavesAFileAloneThatIsBeingRead, RefusesToDeleteOrOverwriteAReadOnlyFile,
                            ListsFilesByTheirFullNames, AppendsToAFileOrMakesIt, MakesFoldersOfOneLevel,
                            DeletesAReadOnlyFileWhoseAttributesWereCleared, KeepsTheTimesThatAFileIsGiven,
                            GivesAFileBackTheAttributesItHad);

}  // namespace tb
