#include <gtest/gtest.h>

#include "fakes/FakeFiles.h"
#include "fakes/Raised.h"
#include "platform/AtomicWrite.h"

namespace tb {
namespace {

using World = std::map<std::filesystem::path, Text>;

const std::filesystem::path Target = "folder/target";

struct Storage : FakeFiles {
    explicit Storage(bool withTarget) {
        Folders.insert("folder");
        if (withTarget) Contents[Target] = "old";
    }
    // The number of the error raised, 0 for none.
    std::int32_t WriteNew() {
        return Raised([&] {
            WriteFileAtomically(*this, Target, [](FileWriter& writer) {
                writer.Write("new ");
                writer.Write("content");
            });
        });
    }
};

// Every failing step is walked: the target is the old or the new one, the temporary file is gone and nothing stays
// open.
TEST(AtomicWrite, LeavesTheOldFileWhateverStepFails) {
    for (const bool withTarget : {true, false}) {
        int step = 0;
        for (bool failed = true; failed;) {
            Storage files(withTarget);
            const World before = files.Contents;
            files.FailAt(++step);
            failed = files.WriteNew() != 0;
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
        Storage files(true);
        const auto content = [&](FileWriter& writer) {
            writer.Write("half");
            if (failing) files.FailAt(1, ErrorNumber::DeviceIO, true);
            throw Error(ErrorNumber::Subscript);
        };
        EXPECT_EQ(Raised([&] { WriteFileAtomically(files, Target, content); }), 9);
        EXPECT_EQ(files.Contents[Target], "old");
        files.FailNoMore();
        DropUnfinished(files, Target);
        EXPECT_EQ(files.Contents, (World{{Target, "old"}}));
    }
}

}  // namespace
}  // namespace tb
