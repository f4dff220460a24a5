#include <gtest/gtest.h>

#include "fakes/FakeFiles.h"
#include "fakes/Raised.h"
#include "platform/AtomicWrite.h"

namespace tb {
namespace {

using World = std::map<std::filesystem::path, Text>;

const std::filesystem::path Target = "folder/target";

// Every failing step is walked: the target is the old or the new one, the temporary file is gone and nothing stays
// open.
TEST(AtomicWrite, LeavesTheOldFileWhateverStepFails) {
    for (const World& before : {World{{Target, "old"}}, World()}) {
        int step = 0;
        for (bool failed = true; failed;) {
            FakeFiles files;
            files.Folders = {"folder"};
            files.Contents = before;
            files.FailAt(++step);
            const auto write = [&] {
                WriteFileAtomically(files, Target, [](FileWriter& writer) {
                    writer.Write("new ");
                    writer.Write("content");
                });
            };
            failed = Raised(write) != 0;
            EXPECT_EQ(files.Contents, failed ? before : (World{{Target, "new content"}})) << "step " << step;
            EXPECT_EQ(files.OpenCount(), 0U) << "step " << step;
        }
        // Opening, two writes, the flush and the replacing can fail.
        EXPECT_EQ(step, 6);
    }
}

// Also when cleaning up fails.
TEST(AtomicWrite, PassesOnWhatTheContentRaises) {
    for (const bool failing : {false, true}) {
        FakeFiles files;
        files.Folders = {"folder"};
        files.Contents[Target] = "old";
        const auto content = [&](FileWriter& writer) {
            writer.Write("half");
            if (failing) files.FailAt(1, ErrorNumber::DeviceIO, true);
            throw Error(ErrorNumber::Subscript);
        };
        EXPECT_EQ(Raised([&] { WriteFileAtomically(files, Target, content); }), 9);
        files.FailNoMore();
        DropUnfinished(files, Target);
        EXPECT_EQ(files.Contents, (World{{Target, "old"}}));
    }
}

}  // namespace
}  // namespace tb
