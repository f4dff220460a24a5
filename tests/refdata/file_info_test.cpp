#include <gtest/gtest.h>

#include "fakes/FakePlatform.h"
#include "fakes/Raised.h"
#include "refdata/mFileInfo.h"

namespace tb {
namespace {

const std::filesystem::path Path = "/app/a.dll";
const Date Created(CivilDate{2001, 1, 1, 0, 0, 0});
const Date Accessed(CivilDate{2003, 3, 3, 0, 0, 0});
const Date Modified(CivilDate{2002, 2, 2, 0, 0, 0});

struct FileInfoRig : FakeSystem {
    FileInfoRig() { Files.Contents[Path] = "x"; }
};

TEST(SetFileDates, SetsThemAndKeepsTheAttributesWhateverStepFails) {
    for (int step = 1; step <= 4; ++step) {
        FileInfoRig rig;
        rig.Files.ReadOnly.insert(Path);
        rig.Files.FailAt(step);
        const std::int32_t raised = Raised([&] { SetFileDates(rig.Files, Path, Created, Accessed, Modified, true); });
        // Clearing, setting, restoring.
        EXPECT_EQ(raised, step <= 3 ? 61 : 0) << step;
        EXPECT_EQ(rig.Files.IsReadOnly(Path), step != 3) << step;
        Date created;
        Date accessed;
        Date modified;
        GetFileDates(rig.Files, Path, created, accessed, modified);
        EXPECT_EQ(created == Created && accessed == Accessed && modified == Modified, step >= 3) << step;
    }
    FileInfoRig rig;
    rig.Files.Zone = 2;
    SetFileDates(rig.Files, Path, Created, Accessed, Modified, false);
    EXPECT_EQ(rig.Files.Times(Path).Modified, Modified.PlusSeconds(7200));
    EXPECT_EQ(Raised([&] { SetFileDates(rig.Files, "/app/absent", Created, Accessed, Modified, true); }), 53);
}

TEST(GetFileInfo, GivesDatesAndTheStringsOfTheVersionResource) {
    FileInfoRig rig;
    SetFileDates(rig.Files, Path, Created, Accessed, Modified, true);
    FileInfo info;
    info.Comments = "of another file";
    EXPECT_FALSE(GetFileInfo(rig.Files, rig.Versions, Path, info));
    EXPECT_EQ(info.Comments, "");
    EXPECT_EQ(info.CreatedDate, Created);
    EXPECT_EQ(info.ModifiedDate, Modified);
    EXPECT_EQ(info.AccessedDate, Accessed);

    Text told;
    for (const char* name :
         {"CompanyName", "FileDescription", "FileVersion", "InternalName", "LegalCopyright", "OriginalFileName",
          "ProductName", "ProductVersion", "LegalTrademarks", "PrivateBuild", "SpecialBuild"}) {
        rig.Versions.Versions[Path][name] = Text(name) + ";";
        told += Text(name) + ";";
    }
    EXPECT_TRUE(GetFileInfo(rig.Files, rig.Versions, Path, info));
    EXPECT_EQ(info.CompanyName + info.FileDescription + info.FileVersion + info.InternalName + info.LegalCopyright +
                  info.OriginalFileName + info.ProductName + info.ProductVersion + info.LegalTrademarks +
                  info.PrivateBuild + info.SpecialBuild,
              told);
    EXPECT_EQ(info.Comments, "") << "a missing string";
    EXPECT_EQ(Raised([&] { GetFileInfo(rig.Files, rig.Versions, "/app/absent", info); }), 53);
}

}  // namespace
}  // namespace tb
