#include <gtest/gtest.h>

#include "fakes/FakeFiles.h"
#include "submissions/SubmissionQueue.h"

namespace tb {
namespace {

// The last one first.
struct BackwardFiles : FakeFiles {
    std::vector<Path> List(const Path& folder) override {
        std::vector<Path> names = FakeFiles::List(folder);
        std::reverse(names.begin(), names.end());
        return names;
    }
};

TEST(Queue, ListsInOrderAndClearsOnlyItsLeftovers) {
    BackwardFiles files;
    files.Folders = {"/Data"};
    SubmissionQueue queue(files, "/Data");
    EXPECT_TRUE(queue.IsEmpty()) << "without a folder";
    queue.MakeFolders();
    for (const char* name : {"2.E", "1.U", "other"}) queue.Add(name, name);
    queue.SetAside("2.E");
    EXPECT_EQ(queue.List(), (std::vector<std::filesystem::path>{"1.U", "other"}));
    const std::set<std::filesystem::path> kept{"/Data/a.X.tmp~", "/Data/b.E", "/Data/InProcess/1.U",
                                               "/Data/InProcess/other", "/Data/InProcess/Error/2.E"};
    for (const char* name : {"a.X.tmp~", "b.E", "3.e.tmp~", "4.U.TMP~"}) files.Contents[Text("/Data/") + name];
    queue.ClearLeftovers();
    std::set<std::filesystem::path> left;
    for (const auto& [path, content] : files.Contents) left.insert(path);
    EXPECT_EQ(left, kept);
}

}  // namespace
}  // namespace tb
