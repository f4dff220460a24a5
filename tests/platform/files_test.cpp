#include "fakes/FakeFiles.h"
#include "fakes/TestFolder.h"
#include "platform/files_contract.h"
#include "platform/posix/PosixFiles.h"

namespace tb {
namespace {

class PosixKit {
public:
    Files& Storage() { return m_Files; }
    const std::filesystem::path& Folder() const { return m_Folder.Path(); }
    static void MakeFolder(const std::filesystem::path& path) { std::filesystem::create_directory(path); }
    static void MakeReadOnly(const std::filesystem::path& path) {
        std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    }

private:
    TestFolder m_Folder;
    PosixFiles m_Files;
};

class FakeKit {
public:
    FakeKit() { MakeFolder(Folder()); }
    Files& Storage() { return m_Files; }
    static std::filesystem::path Folder() { return "memory"; }
    void MakeFolder(const std::filesystem::path& path) { m_Files.Folders.insert(path); }
    void MakeReadOnly(const std::filesystem::path& path) { m_Files.ReadOnly.insert(path); }

private:
    FakeFiles m_Files;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Posix, FilesContract, PosixKit);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, FilesContract, FakeKit);

}  // namespace
}  // namespace tb
