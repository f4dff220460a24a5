// The settings file: made, damaged, refused, saved under faults.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/TestFolder.h"
#include "platform/AtomicWrite.h"
#include "platform/posix/PosixFiles.h"
#include "ui/SettingsRig.h"

namespace tb {
namespace {

using testing::ElementsAre;

const Text Bad = Text(SettingsRig::File) + ".bad";
const Text Sample =
    "<INI DATE='01/01/2005 00:00:00'>\r\n<SECTION name='Main'>\r\n<ELEMENT NAME='Sound'>1</ELEMENT>\r\n"
    "<ELEMENT NAME='Splash'>\xE4&amp;0</ELEMENT>\r\n</SECTION>\r\n</INI>\r\n";
const Text Empty = "<INI DATE='11/21/2026 10:11:12'>\r\n</INI>\r\n";

Text LoadMessage(const Text& description) {
    return "0 Trawlbeam: Error with INI File " + Text(SettingsRig::File) + ", " + description;
}

TEST(SettingsFile, IsMadeWhenItIsNotThere) {
    SettingsRig rig;
    rig.Separators = {'.', '-'};
    xmlINI settings = rig.Make();
    EXPECT_TRUE(settings.LoadINI(SettingsRig::File));
    EXPECT_EQ(settings.INIFileName(), SettingsRig::File);
    EXPECT_EQ(rig.Content(), "<INI DATE='11.21.2026 10-11-12'>\r\n</INI>\r\n");
    EXPECT_EQ(settings.GetXMLString("Main", "Sound", "d"), "d");
    EXPECT_TRUE(rig.Messages.Take().empty());
    EXPECT_EQ(rig.Storage.Contents.size(), 1U);
}

TEST(SettingsFile, ANewLoadDropsWhatWasThere) {
    SettingsRig rig;
    xmlINI settings = rig.Loaded(Sample);
    rig.Content() = "<INI><S name='Other'/></INI>";
    EXPECT_TRUE(settings.LoadINI(SettingsRig::File));
    EXPECT_EQ(settings.GetXMLString("Main", "Sound", "d"), "d");
    EXPECT_TRUE(settings.SaveXMLINI());
    EXPECT_THAT(rig.Content(), testing::Not(testing::HasSubstr("MAIN")));
}

TEST(SettingsFile, AMissingFolderOrRefusedFileIsTold) {
    SettingsRig rig;
    xmlINI settings = rig.Make();
    EXPECT_FALSE(settings.LoadINI("absent/x.ini"));
    EXPECT_THAT(rig.Messages.Take(), ElementsAre("0 Trawlbeam: Error with INI File absent/x.ini, Path not found"));
    EXPECT_FALSE(settings.SaveXMLINI());
    EXPECT_THAT(rig.Messages.Take(), ElementsAre("0 Trawlbeam: Error saving XML INI Path not found"));
    xmlINI unloaded = rig.Make();
    EXPECT_FALSE(unloaded.SaveXMLINI());
    EXPECT_EQ(rig.Messages.Take().size(), 1U);
}

// The file can go between the look for it and the read.
TEST(SettingsFile, AFileThatVanishesIsToldWithItsOwnBox) {
    SettingsRig rig;
    rig.Content() = Sample;
    rig.Storage.FailAt(2, ErrorNumber::FileNotFound);
    xmlINI settings = rig.Make();
    EXPECT_FALSE(settings.LoadINI(SettingsRig::File));
    EXPECT_THAT(rig.Messages.Take(), ElementsAre("48 Trawlbeam: INI File app/Trawlbeam.ini does not exist"));
}

TEST(SettingsFile, ADefectiveFileIsToldAndKeptBesideTheNewOne) {
    for (const Text& content :
         {Text(), Text("\0\0\0", 3), Text("<INI DATE='x'>\r\n<SECTION name='Main'"), Text("[Main]\r\nSound=1\r\n"),
          Text("\xFF\xFE<INI/>"), Text(10 << 20, '<'), "<INI>" + Text(3 << 20, ' ') + "</ini>"}) {
        SettingsRig rig;
        xmlINI settings = rig.Loaded(content);
        EXPECT_THAT(rig.Messages.Take(), ElementsAre(testing::StartsWith(LoadMessage("XML line "))));
        EXPECT_EQ(settings.GetXMLString("Main", "Sound", "d"), "d");
        settings.WriteXMLString("Main", "Sound", "1");
        EXPECT_EQ(rig.Content(), content);
        EXPECT_TRUE(settings.SaveXMLINI());
        EXPECT_EQ(rig.Storage.Contents[Bad], content);
        EXPECT_THAT(rig.Content(), testing::HasSubstr("<ELEMENT NAME='Sound'>1</ELEMENT>"));
        // Only the first save finds the defective file.
        EXPECT_TRUE(settings.SaveXMLINI());
        EXPECT_EQ(rig.Storage.Contents[Bad], content);
        EXPECT_TRUE(settings.LoadINI(SettingsRig::File));
        EXPECT_TRUE(rig.Messages.Take().empty());
        EXPECT_EQ(rig.Storage.Contents.size(), 2U);
    }
}

TEST(SettingsFile, CutAnywhereItIsDefective) {
    for (size_t length = 0; length < Sample.size() - 2; ++length) {
        SettingsRig rig;
        xmlINI settings = rig.Loaded(Text(Left(Sample, length)));
        EXPECT_EQ(rig.Messages.Take().size(), 1U) << length;
        EXPECT_EQ(settings.GetXMLString("Main", "Sound", "d"), "d");
        EXPECT_TRUE(settings.SaveXMLINI());
        EXPECT_EQ(rig.Storage.Contents[Bad], Left(Sample, length));
        EXPECT_EQ(rig.Content(), Empty);
    }
}

TEST(SettingsFile, DuplicatesEndTheLoadWhereTheyStand) {
    const Text duplicate = LoadMessage("This key is already associated with an element of this collection");
    const Text first = "<INI><S name='One'><E name='A'>1</E></S>";
    {
        SettingsRig rig;
        xmlINI settings =
            rig.Loaded(first + "<S name='Two'><E name='B'>1</E><E NAME='b'>2</E></S><S name='Three'/></INI>");
        EXPECT_THAT(rig.Messages.Take(), ElementsAre(duplicate));
        EXPECT_EQ(settings.GetXMLString("One", "A", "d"), "1");
        EXPECT_EQ(settings.GetXMLString("Two", "B", "d"), "d");
    }
    SettingsRig rig;
    xmlINI settings =
        rig.Loaded(first + "<S name='ONE'><E name='A'>2</E></S><S name='Three'><E name='C'>3</E></S></INI>");
    EXPECT_THAT(rig.Messages.Take(), ElementsAre(duplicate));
    EXPECT_EQ(settings.GetXMLString("One", "A", "d"), "1");
    EXPECT_EQ(settings.GetXMLString("Three", "C", "d"), "d");
    // The file that replaces it loads again.
    EXPECT_TRUE(settings.SaveXMLINI());
    EXPECT_TRUE(settings.LoadINI(SettingsRig::File));
    EXPECT_EQ(settings.GetXMLString("One", "A", "d"), "1");
    EXPECT_TRUE(rig.Messages.Take().empty());
}

TEST(SettingsFile, ReadOnlyIsToldAndTheFileStays) {
    const TestFolder folder;
    folder.Write("x.ini", Sample);
    PosixFiles files;
    SettingsRig rig;
    xmlINI settings({files, rig.Time, rig.Messages, {}, "Trawlbeam"});
    ASSERT_TRUE(settings.LoadINI(folder.Path() / "x.ini"));
    settings.WriteXMLString("Main", "Sound", "0");
    std::filesystem::permissions(folder.Path() / "x.ini", std::filesystem::perms::owner_read);
    EXPECT_FALSE(settings.SaveXMLINI());
    EXPECT_THAT(rig.Messages.Take(), ElementsAre("0 Trawlbeam: Error saving XML INI Permission denied"));
    EXPECT_EQ(folder.Read("x.ini"), Sample);
    EXPECT_EQ(folder.Names(), "x.ini");
    std::filesystem::permissions(folder.Path() / "x.ini", std::filesystem::perms::owner_all);
    EXPECT_TRUE(settings.SaveXMLINI());
    EXPECT_THAT(folder.Read("x.ini"), testing::HasSubstr("<ELEMENT NAME='Sound'>0</ELEMENT>"));
    EXPECT_EQ(folder.Names(), "x.ini");
}

// Each call of a save fails once, and then with all that follow, as when the program is killed there.
TEST(SettingsFile, ASaveThatFailsAnywhereLeavesTheOldOrTheNewFile) {
    for (const bool forGood : {false, true}) {
        for (int call = 1;; ++call) {
            SettingsRig rig;
            xmlINI settings = rig.Loaded(Sample);
            settings.WriteXMLString("Main", "Sound", "0");
            rig.Storage.FailAt(call, ErrorNumber::DiskFull, forGood);
            const bool saved = settings.SaveXMLINI();
            rig.Storage.FailNoMore();
            if (saved) {
                EXPECT_GE(call, 4);
                EXPECT_TRUE(rig.Messages.Take().empty());
                break;
            }
            EXPECT_EQ(rig.Content(), Sample) << call;
            EXPECT_THAT(rig.Messages.Take(), ElementsAre("0 Trawlbeam: Error saving XML INI Disk full"));
            EXPECT_EQ(rig.Storage.Contents.count(SettingsRig::File + Text(TemporarySuffix)) == 1, forGood && call > 1);
            EXPECT_TRUE(settings.SaveXMLINI());
            EXPECT_TRUE(settings.LoadINI(SettingsRig::File));
            EXPECT_EQ(settings.GetXMLString("Main", "Sound", "d"), "0");
        }
    }
}

// As long as there is no copy of the user's defective file, nothing takes its place.
TEST(SettingsFile, ADefectiveFileIsNeverLostByAFailingSave) {
    const Text defective = "<INI><SECTION name='Main'>";
    for (const bool forGood : {false, true}) {
        int failures = 0;
        for (int call = 1;; ++call) {
            SettingsRig rig;
            xmlINI settings = rig.Loaded(defective);
            rig.Storage.FailAt(call, ErrorNumber::DiskFull, forGood);
            const bool saved = settings.SaveXMLINI();
            rig.Storage.FailNoMore();
            if (saved) break;
            ++failures;
            EXPECT_EQ(rig.Content(), defective) << call;
            const auto copy = rig.Storage.Contents.find(Bad);
            EXPECT_TRUE(copy == rig.Storage.Contents.end() || copy->second == defective) << call;
            EXPECT_TRUE(settings.SaveXMLINI());
            EXPECT_EQ(rig.Storage.Contents[Bad], defective) << call;
            EXPECT_EQ(rig.Content(), Empty);
        }
        EXPECT_GE(failures, 10);
    }
}

}  // namespace
}  // namespace tb
